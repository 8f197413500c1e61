#pragma once

// A door that can be shut and whose answers can be lost, put in front of a real one: walks and
// tests of both sides break the link with it and count the calls that pass.

#include <cstdint>
#include <mutex>

#include "packet/application_server.h"

namespace orvane {

/// The verbs of IApplicationServer. Apply and Call are the writes: whoever loses their answer does
/// not know the outcome.
enum class Verb : std::uint8_t { Greet, LogIn, LogOut, Fetch, Apply, Call };

constexpr bool IsWrite(Verb verb) {
  return verb == Verb::Apply || verb == Verb::Call;
}

/// Requests by verb, counted when they are made, whatever became of them.
struct CallCounts {
  int greet = 0;
  int logIn = 0;
  int logOut = 0;
  int fetch = 0;
  int apply = 0;
  int call = 0;

  int Total() const { return greet + logIn + logOut + fetch + apply + call; }
  bool operator==(const CallCounts&) const = default;
};

/// Where a link breaks: before the server saw the request, or behind it, when only the answer is
/// lost. A question answers LinkDown either way, a write OutcomeUnknown.
enum class LinkBreak : std::uint8_t { BeforeCall, AfterCall };

/// Which writes a cut waits for.
enum class CutAt : std::uint8_t { AnyWrite, Apply, Call };

class FaultyDoor final : public IApplicationServer {
 public:
  /// `behind` outlives the door.
  explicit FaultyDoor(IApplicationServer& behind) : behind_(behind) {}

  /// While stopped every call answers LinkDown and nothing reaches the server.
  void Stop();
  void Start();

  /// The next write is not carried out; whoever asked cannot know that.
  void CutBeforeNextCommit(CutAt where = CutAt::AnyWrite);
  /// The next write is carried out and its answer lost.
  void CutAfterNextCommit(CutAt where = CutAt::AnyWrite);
  /// Breaks the `number`-th call from now, 1 being the next, of whatever verb.
  void BreakCall(int number, LinkBreak where);

  CallCounts Counts() const;
  void ResetCounts();

  Answer<Greeting> Greet() override;
  Answer<SessionInfo> LogIn(const LoginRequest& request) override;
  Answer<Done> LogOut(const Caller& caller) override;
  Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                        const std::vector<FetchRequest>& requests) override;
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override;
  Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) override;
  bool IsReachable() const override;

 private:
  enum class Fate : std::uint8_t { Pass, Shut, LoseRequest, LoseAnswer };

  /// Counts the call, decides what becomes of it and takes back the fault that was waiting for it.
  Fate NextFate(Verb verb);
  template <class T, class Work>
  Answer<T> Through(Verb verb, Work work);

  IApplicationServer& behind_;
  mutable std::mutex mutex_;  // guards what follows
  CallCounts counts_;
  bool stopped_ = false;
  bool cutWaits_ = false;
  CutAt cutAt_ = CutAt::AnyWrite;
  LinkBreak cutWhere_ = LinkBreak::BeforeCall;
  int callsUntilBreak_ = 0;  // 0: none waits
  LinkBreak breakWhere_ = LinkBreak::BeforeCall;
};

}  // namespace orvane
