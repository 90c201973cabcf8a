// The outcome of an operation that can fail for a reason worth telling: a value or an error text.
//
// Threads: none of its own; a Result is a value.
// Errors:  reading value() of a failure, or error() of a success, throws std::bad_variant_access (a bug).
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace lumivane {

// Why something failed, as one line for the log. Made with `return Error{"..."};`.
struct Error {
  std::string message;
};

// The value of an operation that has nothing to hand back but its success.
struct Done {};

template <typename T>
class [[nodiscard]] Result {
 public:
  // So that a function ends in `return value;` or `return Error{...};`.
  // NOLINTBEGIN(google-explicit-constructor)
  Result(T value) : outcome_(std::move(value)) {}
  Result(Error error) : outcome_(std::move(error)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] bool ok() const { return std::holds_alternative<T>(outcome_); }
  explicit operator bool() const { return ok(); }

  [[nodiscard]] T& value() & { return std::get<T>(outcome_); }
  [[nodiscard]] const T& value() const& { return std::get<T>(outcome_); }
  [[nodiscard]] T&& value() && { return std::get<T>(std::move(outcome_)); }
  [[nodiscard]] const std::string& error() const { return std::get<Error>(outcome_).message; }

 private:
  std::variant<T, Error> outcome_;
};

}  // namespace lumivane
