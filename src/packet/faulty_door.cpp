#include "packet/faulty_door.h"

#include <cassert>

#include "packet/link_failure.h"

namespace orvane {
namespace {

int& CountOf(CallCounts& counts, Verb verb) {
  switch (verb) {
    case Verb::Greet:
      return counts.greet;
    case Verb::LogIn:
      return counts.logIn;
    case Verb::LogOut:
      return counts.logOut;
    case Verb::Fetch:
      return counts.fetch;
    case Verb::Apply:
      return counts.apply;
    case Verb::Call:
      break;
  }
  return counts.call;
}

bool CutConcerns(CutAt where, Verb verb) {
  switch (where) {
    case CutAt::AnyWrite:
      return IsWrite(verb);
    case CutAt::Apply:
      return verb == Verb::Apply;
    case CutAt::Call:
      break;
  }
  return verb == Verb::Call;
}

}  // namespace

void FaultyDoor::Stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
}

void FaultyDoor::Start() {
  const std::lock_guard lock(mutex_);
  stopped_ = false;
}

void FaultyDoor::CutBeforeNextCommit(CutAt where) {
  const std::lock_guard lock(mutex_);
  cutWaits_ = true;
  cutAt_ = where;
  cutWhere_ = LinkBreak::BeforeCall;
}

void FaultyDoor::CutAfterNextCommit(CutAt where) {
  const std::lock_guard lock(mutex_);
  cutWaits_ = true;
  cutAt_ = where;
  cutWhere_ = LinkBreak::AfterCall;
}

void FaultyDoor::BreakCall(int number, LinkBreak where) {
  assert(number > 0);
  const std::lock_guard lock(mutex_);
  callsUntilBreak_ = number;
  breakWhere_ = where;
}

CallCounts FaultyDoor::Counts() const {
  const std::lock_guard lock(mutex_);
  return counts_;
}

void FaultyDoor::ResetCounts() {
  const std::lock_guard lock(mutex_);
  counts_ = {};
}

FaultyDoor::Fate FaultyDoor::NextFate(Verb verb) {
  const auto fate = [](LinkBreak where) {
    return where == LinkBreak::BeforeCall ? Fate::LoseRequest : Fate::LoseAnswer;
  };
  const std::lock_guard lock(mutex_);
  ++CountOf(counts_, verb);
  const bool breaks = callsUntilBreak_ > 0 && --callsUntilBreak_ == 0;
  if (stopped_) return Fate::Shut;
  if (breaks) return fate(breakWhere_);
  if (!cutWaits_ || !CutConcerns(cutAt_, verb)) return Fate::Pass;
  cutWaits_ = false;
  return fate(cutWhere_);
}

template <class T, class Work>
Answer<T> FaultyDoor::Through(Verb verb, Work work) {
  const Fate fate = NextFate(verb);
  if (fate == Fate::Shut) return LinkIsDown();
  if (fate == Fate::Pass) return work();
  if (fate == Fate::LoseAnswer) static_cast<void>(work());
  return IsWrite(verb) ? OutcomeIsUnknown() : LinkIsDown();
}

Answer<Greeting> FaultyDoor::Greet() {
  return Through<Greeting>(Verb::Greet, [&] { return behind_.Greet(); });
}

Answer<SessionInfo> FaultyDoor::LogIn(const LoginRequest& request) {
  return Through<SessionInfo>(Verb::LogIn, [&] { return behind_.LogIn(request); });
}

Answer<Done> FaultyDoor::LogOut(const Caller& caller) {
  return Through<Done>(Verb::LogOut, [&] { return behind_.LogOut(caller); });
}

Answer<std::vector<DataPacket>> FaultyDoor::Fetch(const Caller& caller,
                                                  const std::vector<FetchRequest>& requests) {
  return Through<std::vector<DataPacket>>(Verb::Fetch,
                                          [&] { return behind_.Fetch(caller, requests); });
}

Answer<ApplyAnswer> FaultyDoor::Apply(const Caller& caller, const ApplyRequest& request) {
  return Through<ApplyAnswer>(Verb::Apply, [&] { return behind_.Apply(caller, request); });
}

Answer<VariantArray> FaultyDoor::Call(const Caller& caller, const MethodCall& call) {
  return Through<VariantArray>(Verb::Call, [&] { return behind_.Call(caller, call); });
}

bool FaultyDoor::IsReachable() const {
  const std::lock_guard lock(mutex_);
  return !stopped_ && behind_.IsReachable();
}

}  // namespace orvane
