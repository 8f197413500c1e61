#pragma once

// A small enterprise behind a server made of tables, and one user on the purchase request screen:
// for the rules that the screen holds by itself. What the real server makes of the same steps is
// tried by the walks.

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "contract/purchase_request.h"
#include "host/form_fakes.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "modules/purchases/purchase_requests/tf_purchase_order.h"

namespace orvane::modules::requests {

using fakes::FakeToolkit;

// Kinds of purchase, partners, units and people of the enterprise.
inline constexpr int kCapital = 1, kBrm = 2, kServices = 3, kOther = 4, kWares = 5, kPriced = 6;
inline constexpr int kLev = 1, kDollar = 3;
inline constexpr std::int64_t kSteel = 20117, kForeign = 20200;
inline constexpr int kIvanova = 1204;

using Rows = std::vector<NamedValues>;

/// One version of a request as the server holds it.
struct Document {
  NamedValues head;
  Rows det, del, pay, adm, deliveries, roles;
};

class TableServer final : public IApplicationServer {
 public:
  TableServer();

  SessionInfo session;
  std::map<int, std::map<int, std::string>> params;  ///< by group and number
  std::map<std::string, Rows> tables;                ///< behind search statements, by table name
  std::vector<Document> documents;                   ///< in order of identifier and version
  std::int64_t employee = kIvanova;
  bool admissible = true;
  Variant rate;                       ///< of every foreign currency; Null: none known
  VariantArray sumCheck{1, 1, 0};     ///< compared, plan, is the amount
  std::optional<Failure> refuseNext;  ///< answers the next change applied
  NamedValues presentNext;            ///< with it: the row as it is now
  std::optional<Failure> failNext;    ///< answers the next apply as a whole
  VariantArray newRec{0, 0, 0};

  std::vector<FetchRequest> fetches;
  std::vector<ApplyRequest> applies;
  std::vector<MethodCall> methods;

  Answer<Greeting> Greet() override { return Greeting(); }
  Answer<SessionInfo> LogIn(const LoginRequest& request) override;
  Answer<Done> LogOut(const Caller&) override { return Done(); }
  Answer<std::vector<DataPacket>> Fetch(const Caller&,
                                        const std::vector<FetchRequest>& requests) override;
  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest& request) override;
  Answer<VariantArray> Call(const Caller&, const MethodCall& call) override;

  Document& Find(std::int64_t id);
  /// The last search statement that read from this table; empty when none did.
  std::string SqlOf(std::string_view table) const;

 private:
  DataPacket Search(const FetchRequest& request);
  VariantArray GetRec(const VariantArray& ask);
  Document* Target(const VariantArray& ask);
  void Write(const std::string& provider, const Change& change, ChangeOutcome& outcome);
};

/// A head with everything filled that a request needs: entered, kind 4, in levs.
Document MakeDocument(int id, int version = 1);
void Set(NamedValues& row, std::string_view name, Variant value);
/// A row of material 20045 (unit 101, decimals 2).
NamedValues MakeRow(int id, int number);

/// A logged-in user with the screen open.
class World {
 public:
  explicit World(int rights = 15, int languages = 2, int level = 3);

  void Open();
  TfPurchaseOrder& Screen() { return *screen_; }
  TdmPurchaseOrder& Rules() { return *screen_->dmPurchaseOrder; }
  TVosClientDataSet& Head() { return Rules().cdsPurchaseOrder; }
  TVosClientDataSet& Rows() { return Rules().cdsPurchaseOrderDet; }

  void Press(KeyStroke key) { fakes::Press(Screen(), key); }
  /// Points at the field of the focused control, types, and leaves it without leaving the control.
  void Type(std::string_view field, std::string_view text);
  void Choose(std::string_view action) { Screen().Dispatch(ActionChosen{std::string(action)}); }
  void FocusOn(Control& control) { Screen().Dispatch(Pointed{&control}); }
  bool IsLive(std::string_view action) { return Screen().FindAction(action)->enabled; }
  /// Names of live actions of the list, in its order, parted by blanks.
  std::string Live(std::span<const std::string_view> of);
  std::string Live(std::initializer_list<std::string_view> of) {
    return Live(std::span(of.begin(), of.size()));
  }
  std::string Columns(const TVosDBGrid& grid);
  std::string Items(const TVosDataInspector& inspector);
  /// Name of the focused control; for grids and inspectors with the field: "diMainInfo.CostCenter".
  std::string Focus();
  /// Texts of the messages shown, parted by " | "; forgets them.
  std::string Messages();
  /// Calls to the server since the last question.
  std::int64_t Calls();
  void AnswerYes(int times = 1);
  /// A new request on the screen with its head typed whole (kind 4).
  void StartNew();

  TableServer server;
  FakeToolkit toolkit;
  SetClock clock{Stamp{1'772'694'000'000'000}};  // 05.03.2026 07:00 UTC
  std::unique_ptr<VosApplication> app;
  std::unique_ptr<TfOrvaneMain> mainForm;

 private:
  TfPurchaseOrder* screen_ = nullptr;
  std::int64_t callsSeen_ = 0;
};

}  // namespace orvane::modules::requests
