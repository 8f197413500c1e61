#pragma once

// The plan of capital expenditure: numbered positions with a name and description in two languages,
// a start, a deadline and a sum. A screen holds one position at a time.

#include "contract/field.h"

namespace orvane::cap_ex_plan {

inline constexpr auto Code = Int32("Code", Key | Required, "Код");
inline constexpr auto Name = String("Name", 50, Required | Folded, "Име");
inline constexpr auto Name2 = String("Name2", 50, Folded, "Име 2");
inline constexpr auto InternalNumber = String("InternalNumber", 30, Plain, "Вътрешен номер");
inline constexpr auto FromDate = Day("FromDate", Required, "Дата");
inline constexpr auto TimeLimit = Day("TimeLimit", Required, "Краен срок");
inline constexpr auto CapSum = Amount("CapSum", Required, "Сума");
inline constexpr auto Description = Memo("Description", Plain, "Описание");
inline constexpr auto Description2 = Memo("Description2", Plain, "Описание 2");

inline constexpr std::string_view kServerClass = "TsmCapExPlan";
inline constexpr auto dspCapExPlan =
    Writes("dspCapExPlan", "CapExPlan", Code, Name, Name2, InternalNumber, FromDate, TimeLimit,
           CapSum, Description, Description2);

inline constexpr std::int64_t kHighestCode = 999'999'999;

/// TsmCapExPlan.GetRecord answers the position that a move leads to. Moves are those of Nav; steps
/// count for Nav::Step, from the code. A step that the plan cannot take whole ends at its end.
namespace get_record {
inline constexpr std::string_view kName = "GetRecord";
enum Ask { kMode, kOffset, kCode, kAskSize };
/// The state is a LoadCode: Between when the exact code or the whole move was found; First and Last
/// for the ends, and when nothing lies further in that direction; None for an unknown code.
enum Tell { kFound, kState, kData, kTellSize };
}  // namespace get_record

}  // namespace orvane::cap_ex_plan
