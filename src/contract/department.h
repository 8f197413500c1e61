#pragma once

// Departments ("Дирекции"): a small numeric code, a name in two languages, a chief who is a user.

#include "contract/field.h"

namespace orvane::department {

inline constexpr auto Code = Int16("Code", Key | Required, "Код");
inline constexpr auto Name = String("Name", 40, Required | Folded, "Име");
inline constexpr auto Name2 = String("Name2", 40, Folded, "Име");
/// Login of the user who heads the department (WSysUsers.ShortName).
inline constexpr auto Chief = String("Chief", 10, Required, "Началник(В.И.Д.)");

inline constexpr std::string_view kServerClass = "TsmDepartment";
inline constexpr auto dspDepartment =
    Writes("dspDepartment", "Department", Code, Name, Name2, Chief);

}  // namespace orvane::department
