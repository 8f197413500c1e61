#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "packet/application_server.h"

namespace orvane::wire {

/// Keeps what it was asked, answers what it was told to, and can be made to wait inside a call.
class FakeServer final : public IApplicationServer {
 public:
  Answer<Greeting> Greet() override { return Answered(greeting); }
  Answer<SessionInfo> LogIn(const LoginRequest& request) override {
    Keep(loginSeen, request);
    return Answered(session);
  }
  Answer<Done> LogOut(const Caller& caller) override {
    Keep(callerSeen, caller);
    return Answered(Done{});
  }
  Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                        const std::vector<FetchRequest>& requests) override {
    Keep(callerSeen, caller);
    Keep(fetchSeen, requests);
    return Answered(packets);
  }
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override {
    Keep(callerSeen, caller);
    Keep(applySeen, request);
    return Answered(applyAnswer);
  }
  Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) override {
    Keep(callerSeen, caller);
    Keep(callSeen, call);
    return Answered(results);
  }

  /// Calls wait inside the server until Release.
  void Hold() {
    const std::lock_guard lock(mutex_);
    held_ = true;
  }
  void Release() {
    const std::lock_guard lock(mutex_);
    held_ = false;
    changed_.notify_all();
  }
  /// Returns once so many calls have come in.
  void WaitForCalls(int count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return calls_ >= count; });
  }
  int Calls() {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

  Greeting greeting;
  SessionInfo session;
  std::vector<DataPacket> packets;
  ApplyAnswer applyAnswer;
  VariantArray results;
  std::optional<Failure> failure;
  bool throws = false;

  LoginRequest loginSeen;
  Caller callerSeen;
  std::vector<FetchRequest> fetchSeen;
  ApplyRequest applySeen;
  MethodCall callSeen;

 private:
  template <class T>
  void Keep(T& kept, const T& seen) {
    const std::lock_guard lock(mutex_);
    kept = seen;
  }

  template <class T>
  Answer<T> Answered(const T& value) {
    std::unique_lock lock(mutex_);
    ++calls_;
    changed_.notify_all();
    changed_.wait(lock, [&] { return !held_; });
    if (throws) throw std::runtime_error("thrown inside the server");
    if (failure) return *failure;
    return value;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool held_ = false;
  int calls_ = 0;
};

/// A packet with every storage, nulls and a continuation.
inline DataPacket SamplePacket() {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Code).AddColumn("Price", ValueKind::Amount);
  packet.AddColumn("Quantity", ValueKind::Double).AddColumn("Name", ValueKind::String, 20);
  packet.AddColumn("On", ValueKind::Date).AddColumn("Stamp", ValueKind::Stamp);
  packet.AppendRow(std::vector<Variant>{std::int64_t{1234567890123456789}, Decimal(-25000, 4), 0.1,
                                        "Ламарина", Date{20517}, Stamp{1}});
  packet.AppendRow(std::vector<Variant>{-1, {}, {}, {}, {}, {}});
  packet.continuation = std::string("\0\xFF", 2);
  return packet;
}

/// One value of every kind, arrays within arrays among them.
inline VariantArray EveryValue() {
  VariantArray values{Variant(), true, std::int64_t{-9223372036854775807} - 1, 0.1};
  values.push_back(Decimal(-123456789, 9));
  values.push_back(Date{-719162});
  values.push_back(Stamp{-5});
  values.push_back("");
  values.push_back(std::string("нула \0 байт", 19));
  values.push_back(SamplePacket());
  values.push_back(VariantArray{1, VariantArray{VariantArray{}, "вътре"}});
  return values;
}

}  // namespace orvane::wire
