#pragma once

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

namespace tessel {

/// The value that some work returned, or the error that it threw; empty until the work has ended.
template <typename T>
class Outcome {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    Outcome() = default;
    Outcome(std::exception_ptr error) : content(std::move(error)) {}
    Outcome(Value value) : content(std::in_place_index<1>, std::move(value)) {}

    /// Calls the function, and keeps the value that it returns or the error that it throws.
    template <typename Function>
    static Outcome of(Function&& function) noexcept {
        try {
            if constexpr (std::is_void_v<T>) {
                function();
                return Value();
            } else {
                return function();
            }
        } catch (...) {
            return std::current_exception();
        }
    }

    /// Returns the error, or null if there is none.
    std::exception_ptr error() const {
        const auto* thrown = std::get_if<0>(&content);
        return thrown ? *thrown : nullptr;
    }

    /// Moves the value out, or throws the error. Requires: the work has ended.
    T value() && {
        if (const auto thrown = error()) std::rethrow_exception(thrown);
        if constexpr (!std::is_void_v<T>) return std::get<1>(std::move(content));
    }

  private:
    std::variant<std::exception_ptr, Value> content;
};

}  // namespace tessel
