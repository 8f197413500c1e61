#pragma once

#include "packet/application_server.h"

namespace orvane::bench {

using namespace apps;  // measures every floor

/// Answers at once; a fetch gives one page of a list.
class QuickServer final : public IApplicationServer {
 public:
  QuickServer() {
    page_.AddColumn("Code", ValueKind::Code).AddColumn("Sum", ValueKind::Amount);
    page_.AddColumn("On", ValueKind::Date).AddColumn("Name", ValueKind::String, 60);
    for (int row = 0; row < 80; ++row) {
      page_.AppendRow(std::vector<Variant>{row, Decimal(row, 4), Date{row}, "Ламарина 2 мм"});
    }
  }
  Answer<Greeting> Greet() override { return Greeting{}; }
  Answer<SessionInfo> LogIn(const LoginRequest&) override { return SessionInfo{}; }
  Answer<Done> LogOut(const Caller&) override { return Done{}; }
  Answer<std::vector<DataPacket>> Fetch(const Caller&,
                                        const std::vector<FetchRequest>& requests) override {
    return std::vector<DataPacket>(requests.size(), page_);
  }
  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest&) override { return ApplyAnswer{}; }
  Answer<VariantArray> Call(const Caller&, const MethodCall&) override { return VariantArray{}; }

 private:
  DataPacket page_;
};

}  // namespace orvane::bench
