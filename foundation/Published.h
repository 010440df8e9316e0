#pragma once

#include <functional>
#include <utility>

namespace tessel {

/// A value that tells an observer when it changes.
template <typename T>
class Published {
  public:
    /// Takes the observer, which may be empty, may be shared by several values and must outlive them.
    Published(const std::function<void()>& observer, T initial) :
        observer(observer),
        value(std::move(initial)) {}
    Published(const Published&) = delete;

    [[nodiscard]] const T& operator()() const { return value; }

    Published& operator=(T changed) {
        if (value == changed) return *this;
        value = std::move(changed);
        notify();
        return *this;
    }

    /// Changes the value in place, for values that are too large to compare.
    template <typename Change>
    void modify(Change change) {
        change(value);
        notify();
    }

  private:
    void notify() const {
        if (observer) observer();
    }

    const std::function<void()>& observer;
    T value;
};

}  // namespace tessel
