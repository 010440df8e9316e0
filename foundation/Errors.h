#pragma once

#include <exception>
#include <string>

namespace tessel {

/// An error that the operating system or a library reported. Its description is one complete sentence that
/// names the file or program and gives the system's reason.
class PlatformError : public std::exception {
  public:
    PlatformError(std::string domain, int code, std::string localizedDescription);

    [[nodiscard]] const std::string& domain() const { return domainName; }
    [[nodiscard]] int code() const { return errorCode; }
    [[nodiscard]] const std::string& localizedDescription() const { return description; }
    const char* what() const noexcept override { return description.c_str(); }

  private:
    std::string domainName;
    int errorCode;
    std::string description;
};

/// Thrown by work that was asked to stop, at a point where stopping is allowed.
class CancellationError : public std::exception {
  public:
    const char* what() const noexcept override { return "The operation was cancelled."; }
};

/// The domain of errors whose code is an `errno` value.
inline constexpr const char* posixErrorDomain = "POSIX";

/// Returns the system's text for an `errno` value, as strerror words it: "No such file or directory".
[[nodiscard]] std::string systemErrorText(int code);

/// Makes a PlatformError of the POSIX domain that reads `subject`, ": ", the system's text and a full stop.
[[nodiscard]] PlatformError posixError(const std::string& subject, int code);

}  // namespace tessel
