#pragma once

// Cards of the initial evaluation of a supplier: identity, scores per criterion, total,
// confirmation.

#include "contract/field.h"

namespace orvane::initial_map {

inline constexpr std::string_view kServerClass = "TsmInitialEvaluationMap";
inline constexpr std::string_view kGetRecord = "GetRecord";

namespace head {

inline constexpr auto SerialNumber = Int32("SerialNumber", Key | Required, "Пореден номер");
inline constexpr auto ForDate = Day("ForDate", Required, "Дата");
inline constexpr auto QuestionaryId = Int32("QuestionaryId", Plain, "Въпросник – Идентификатор ");
inline constexpr auto SupplierName = String("SupplierName", 50, Required, "Доставчик - Име");
inline constexpr auto SupplierName2 = String("SupplierName2", 50, Plain, "Доставчик - Име2");
inline constexpr auto Seat = Int32("Seat", Required, "Седалище");
inline constexpr auto Address = String("Address", 40, Plain, "Адрес");
inline constexpr auto Address2 = String("Address2", 40, Plain, "Адрес2");
inline constexpr auto ContactPerson = String("ContactPerson", 30, Plain, "Лице за контакт");
inline constexpr auto ContactPerson2 = String("ContactPerson2", 30, Plain, "Лице за контакт2");
inline constexpr auto Phone1 = String("Phone1", 20, Plain, "Телефон 1");
inline constexpr auto Phone2 = String("Phone2", 20, Plain, "Телефон 2");
inline constexpr auto email = String("email", 100, Plain, "email");
inline constexpr auto OfferedBRM = Memo("OfferedBRM", Plain, "Предлагани ОСМ");
inline constexpr auto Supplier = Code19("Supplier", Plain, "Доставчик");
inline constexpr auto OveralEvaluation = Int32("OveralEvaluation", Plain, "Обща оценка");
inline constexpr auto Approved = Bit("Approved", Joined, "Одобрен");
inline constexpr auto CreatedFrom = String("CreatedFrom", 10, Stamped, "Създадена от");
inline constexpr auto CreatedOn = Moment("CreatedOn", Stamped, "Създадена на");
inline constexpr auto CreatedFromName = String("CreatedFromName", 40, Joined, "Име");
inline constexpr auto AmendFrom = String("AmendFrom", 10, Stamped, "Последна корекция от");
inline constexpr auto AmendOn = Moment("AmendOn", Stamped, "Последна корекция на");
inline constexpr auto AmendFromName = String("AmendFromName", 40, Joined, "Име");
inline constexpr auto ConfirmedFrom = String("ConfirmedFrom", 10, Plain, "Потвърдена от");
inline constexpr auto ConfirmedOn = Moment("ConfirmedOn", Plain, "Потвърдена на");
inline constexpr auto ConfirmedFromName = String("ConfirmedFromName", 40, Joined, "Име");
inline constexpr auto PartnerName = String("PartnerName", 50, Joined, "Име");

inline constexpr auto dspInitEvalMap = Writes(
    "dspInitEvalMap", "InitialEvaluationMap", SerialNumber, ForDate, QuestionaryId, SupplierName,
    SupplierName2, Seat, Address, Address2, ContactPerson, ContactPerson2, Phone1, Phone2, email,
    OfferedBRM, Supplier, OveralEvaluation, Approved, CreatedFrom, CreatedOn, CreatedFromName,
    AmendFrom, AmendOn, AmendFromName, ConfirmedFrom, ConfirmedOn, ConfirmedFromName, PartnerName);

}  // namespace head

/// Scores, one per criterion.
namespace criteria {

inline constexpr auto SerialNumber = Int32("SerialNumber", Key | Required);
inline constexpr auto CriteriaNumber = Int32("CriteriaNumber", Key | Required, "Номер");
inline constexpr auto Name = String("Name", 100, Joined, "Име");
inline constexpr auto Name2 = String("Name2", 100, Joined, "Име");
inline constexpr auto Evaluation = Int16("Evaluation", Plain, "Оценка");

inline constexpr auto dspCriteries = Writes("dspCriteries", "InitEvalMapCriteria", SerialNumber,
                                            CriteriaNumber, Name, Name2, Evaluation);

}  // namespace criteria

}  // namespace orvane::initial_map
