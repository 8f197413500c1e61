#pragma once

// A server class is a value: from which points it may be used and for what, its providers, its
// methods. What a provider may write is listed in the contract, never inferred from its SQL.
//
//   ServerClass TsmSuppManifacOrder() {
//     return ServerClass(order::kServerClass)
//         .UsedFrom({Point::SupplierOrders})
//         .DecidedFrom({Point::ApprovalQueue})
//         .ReadFrom({Point::PurchaseRequests})
//         .Provider(order::head::dspSuppManifacOrder, kSelect, kRules);
//   }

#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "contract/points.h"
#include "packet/application_server.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

class Work;

/// What a method asks of the user before it runs.
enum class Rule : std::uint8_t {
  Session,  ///< a living session, whatever the point; the method checks the rest
  Open,     ///< the right at the claimed point, which is one of the class's points
  Edit,
  Insert,
  Delete,
};

/// What a class may be used for from a point; each use includes those before it.
enum class Use : std::uint8_t {
  Read,    ///< rows are fetched, and methods called that only read
  Decide,  ///< decisions are written too, and nothing else
  Whole,
};

/// A method: arguments by position, answer by position.
using OperationFunction = Answer<VariantArray> (*)(Work&, const VariantArray&);

struct ProviderRow {
  ProviderDef def;
  /// Answers the provider's fields in their order; parameters are written :Name. Parameters of the
  /// session are filled by the server: :SessionLogin, :SessionEmployee, :SessionLevel,
  /// :SessionReadsReceived, :Today.
  /// Empty: the rows travel with their document's load and are fetched in no other way.
  std::string_view select;
  /// Kinds of the parameters that the client sends.
  std::vector<FieldDef> params;
  WriteRules rules;
  bool search = false;  ///< runs search statements instead of `select`
};

struct OperationRow {
  std::string_view name;
  Rule rule = Rule::Open;
  OperationFunction function = nullptr;
};

class ServerClass {
 public:
  explicit ServerClass(std::string_view name) : name_(name) {}

  /// The point a request claims must be one of these three kinds: the class's own, where the user's
  /// rights say what he may do, and others, where they reach so far and no further.
  ServerClass UsedFrom(std::initializer_list<Point> points) &&;
  ServerClass DecidedFrom(std::initializer_list<Point> points) &&;
  ServerClass ReadFrom(std::initializer_list<Point> points) &&;
  /// Whatever the point: for classes that guard what they show by themselves.
  ServerClass UsedFromAnywhere() &&;
  ServerClass Provider(const ProviderDef& def, std::string_view select,
                       const WriteRules& rules = {}, std::vector<FieldDef> params = {}) &&;
  ServerClass ReadOnly(const ProviderDef& def, std::string_view select,
                       std::vector<FieldDef> params = {}) &&;
  /// A provider that runs the search statement of the request.
  ServerClass SearchProvider(std::string_view name) &&;
  ServerClass Operation(std::string_view name, Rule rule, OperationFunction function) &&;

  std::string_view Name() const { return name_; }
  std::span<const ProviderRow> Providers() const { return providers_; }
  std::span<const OperationRow> Operations() const { return operations_; }
  /// Null pointer when there is none of that name.
  const ProviderRow* FindProvider(std::string_view name) const;
  const OperationRow* FindOperation(std::string_view name) const;
  /// Nothing when the class is not used from the point at all.
  std::optional<Use> UseFrom(std::int32_t point) const;
  bool IsUsedAnywhere() const { return anywhere_; }

 private:
  std::string_view name_;
  struct PointUse {
    Point point;
    Use use;
  };
  ServerClass From(std::initializer_list<Point> points, Use use) &&;

  std::vector<PointUse> points_;
  bool anywhere_ = false;
  std::vector<ProviderRow> providers_;
  std::vector<OperationRow> operations_;
};

/// NoRight when the class is not put to this use from the claimed point or the user lacks the right
/// there.
Answer<Done> CheckRight(const Work& work, const ServerClass& serverClass, Use use, Right right);
/// NoRight when the change may not be written from the claimed point.
Answer<Done> CheckChangeRight(const Work& work, const ServerClass& serverClass,
                              const ProviderRow& provider, const Change& change);
/// The right that a change of this kind needs.
Right RightFor(ChangeKind kind);
/// NoRight when the method's rule is not met.
Answer<Done> CheckRule(const Work& work, const ServerClass& serverClass, Rule rule);

}  // namespace orvane::server
