#pragma once

// The module points of purchases: where rights are given and from which screens are opened.

#include <cstdint>
#include <span>
#include <string_view>

namespace orvane {

/// Number of the purchases module in the host.
inline constexpr std::int32_t kOrvaneModuleNo = 11;
/// Key of the purchases module in the host.
inline constexpr std::string_view kOrvaneModule = "Orvane";

/// Rights at a point, as bits.
enum class Right : std::uint8_t { None = 0, Open = 1, Edit = 2, Insert = 4, Delete = 8 };

enum class Point : std::int32_t {
  Departments = 1,
  KindSupplies = 2,
  EmployeesFinSupp = 3,
  Parameters = 4,
  Structure = 5,
  StructureDeputies = 6,
  LevelsApproval = 7,
  CapExPlan = 8,
  Deliveries = 9,
  SupplierOrders = 10,
  AdmissibleNotifiers = 11,
  SuppliesContracts = 12,
  PurchaseRequests = 13,
  SupplierInvoices = 14,
  PurchaseRequestReport = 15,
  ApprovalQueue = 16,
  InitialQuestionnaire = 17,
  InitialEvaluationMap = 18,
  PeriodEvaluationMap = 19,
  EvaluationCriteria = 20,
  EvaluationCommittee = 21,
};

/// A point: its name towards the host, the screen that it opens, and its caption in the menu.
struct PointRow {
  Point point;
  std::string_view name;
  std::string_view screenClass;
  std::string_view caption;
};

inline constexpr PointRow kPoints[] = {
    {Point::Departments, "Departments", "TfDepartment", "Дирекции"},
    {Point::KindSupplies, "KindSupplies", "TfKindSupplies", "Видове покупки"},
    {Point::EmployeesFinSupp, "EmployeesFinSupp", "TfEmployeesFinSupp",
     "Служители, финансиращи доставки"},
    {Point::Parameters, "Parameters", "TfOrvaneParameters", "Параметри"},
    {Point::Structure, "Structure", "TfStructure", "Организационна структура"},
    {Point::StructureDeputies, "StructureDeputies", "TfStructureDeputies", "Заместници"},
    {Point::LevelsApproval, "LevelsApproval", "TfLevelsApproval", "Нива на одобрение"},
    {Point::CapExPlan, "CapExPlan", "TfCapExPlan", "План за капиталови разходи"},
    {Point::Deliveries, "Deliveries", "TfDeliveries", "Доставки"},
    {Point::SupplierOrders, "SupplierOrders", "TfSuppManifacOrder", "Поръчки за производство"},
    {Point::AdmissibleNotifiers, "AdmissibleNotifiers", "TfAdmissibleNotifiers",
     "Допустими заявители"},
    {Point::SuppliesContracts, "SuppliesContracts", "TfSuppliesContracts", "Договори за доставки"},
    {Point::PurchaseRequests, "PurchaseRequests", "TfPurchaseOrder", "Искане за покупка"},
    {Point::SupplierInvoices, "SupplierInvoices", "TfRegisterSuppInvoice",
     "Регистър на фактури от доставчици"},
    {Point::PurchaseRequestReport, "PurchaseRequestReport", "TfPurchaseOrderReport",
     "Искания за покупка"},
    {Point::ApprovalQueue, "ApprovalQueue", "TfSuppDocConfirm", "Документи за одобрение"},
    {Point::InitialQuestionnaire, "InitialQuestionnaire", "TfQuestionInitEvalMap",
     "Въпросник за първоначално оценяване"},
    {Point::InitialEvaluationMap, "InitialEvaluationMap", "TfInitialEvaluationMap",
     "Карта за първоначално оценяване"},
    {Point::PeriodEvaluationMap, "PeriodEvaluationMap", "TfPeriodEvaluationMap",
     "Карта за периодично оценяване"},
    {Point::EvaluationCriteria, "EvaluationCriteria", "TfCriteriaEvalSupp",
     "Критерии за оценяване"},
    {Point::EvaluationCommittee, "EvaluationCommittee", "TfEvalCommitteeSupp",
     "Комисия за оценяване"},
};

}  // namespace orvane
