#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

#include "packet/floors.h"

namespace orvane {

/// Why the server did not do what it was asked. The list is closed and the same in-process and over
/// the wire; callers decide by kind, never by text.
enum class FailureKind : unsigned char {
  Refused,         ///< A business rule says no; the message is the whole sentence for the user.
  Conflict,        ///< Somebody else changed or removed the row meanwhile.
  NoRight,         ///< The user, or the claimed module point, may not do this.
  SessionEnded,    ///< The session is unknown, expired or its user is blocked: log in again.
  LinkDown,        ///< The request surely did not reach the server.
  OutcomeUnknown,  ///< The request may have been carried out; send it again under its keys.
  BadRequest,      ///< The request itself is malformed (unknown provider, wrong type, bad SQL).
  Internal,        ///< The server failed in a way nobody planned for.
};

/// A failure as a value. `message` is a whole Bulgarian sentence that may be shown to the user.
/// Refusals of business rules start with "!!Err_", which the message box of the host drops.
struct Failure {
  FailureKind kind = FailureKind::Internal;
  std::string message;

  bool operator==(const Failure&) const = default;
};

/// Marks, on the wire and in reconcile errors, a refusal of a business rule.
inline constexpr char kRefusalMark[] = "!!Err_";

/// Makes a business-rule refusal; `sentence` is Bulgarian, without the mark.
inline Failure Refused(const std::string& sentence) {
  return {FailureKind::Refused, kRefusalMark + sentence};
}

/// Nothing to return, but it went well.
struct Done {
  bool operator==(const Done&) const = default;
};

/// A value, or the failure that stands in its place.
///
///   Answer<DataPacket> answer = Fetch(request);
///   if (!answer) return answer.GetFailure();
///   Show(*answer);
///
/// `F` is what stands in the value's place; floors below the door may have their own.
template <class T, class F = Failure>
class [[nodiscard]] Answer {
 public:
  Answer(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Answer(F failure) : state_(std::in_place_index<1>, std::move(failure)) {}

  bool Ok() const { return state_.index() == 0; }
  explicit operator bool() const { return Ok(); }

  T& operator*() & {
    assert(Ok());
    return std::get<0>(state_);
  }
  const T& operator*() const& {
    assert(Ok());
    return std::get<0>(state_);
  }
  T&& operator*() && {
    assert(Ok());
    return std::get<0>(std::move(state_));
  }
  T* operator->() { return &**this; }
  const T* operator->() const { return &**this; }

  const F& GetFailure() const {
    assert(!Ok());
    return std::get<1>(state_);
  }

 private:
  std::variant<T, F> state_;
};

}  // namespace orvane
