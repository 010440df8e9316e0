#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace tessel {

/// The base of all errors that this program throws: a failure, described by one complete sentence.
class Error : public std::exception {
  public:
    explicit Error(std::string localizedDescription) : description(std::move(localizedDescription)) {}

    [[nodiscard]] const std::string& localizedDescription() const { return description; }
    const char* what() const noexcept override { return description.c_str(); }

  private:
    std::string description;
};

/// An error that the operating system or a library reported. Its sentence names the file or program and gives
/// the system's reason.
class PlatformError : public Error {
  public:
    PlatformError(int code, std::string localizedDescription) :
        Error(std::move(localizedDescription)),
        errorCode(code) {}

    /// Returns the `errno` value, or the library's own number.
    [[nodiscard]] int code() const { return errorCode; }

  private:
    int errorCode;
};

/// Thrown by work that was asked to stop, at a point where stopping is allowed.
class CancellationError : public Error {
  public:
    CancellationError() : Error("The operation was cancelled.") {}
};

/// Returns the error if it is of that type, otherwise nothing. The pointer may be null.
template <typename Type>
std::optional<Type> errorOfType(const std::exception_ptr& error) {
    if (!error) return std::nullopt;
    try {
        std::rethrow_exception(error);
    } catch (const Type& found) {
        return found;
    } catch (...) {
        return std::nullopt;
    }
}

/// Returns the sentence to show for an error of any kind. This is the only place that turns an exception into
/// text.
[[nodiscard]] std::string localizedDescription(const std::exception_ptr& error);

/// Returns the system's text for an `errno` value, such as "No such file or directory".
[[nodiscard]] std::string systemErrorText(int code);

/// Returns a PlatformError that reads `subject`, ": ", the system's text and a full stop.
[[nodiscard]] PlatformError posixError(const std::string& subject, int code);

}  // namespace tessel
