#pragma once

// What every screen reads beside its own data: users, nomenclatures, the current employee, the
// parameter store and the generic search class.

#include "contract/field.h"

namespace orvane::system {

/// The generic search class and its provider, which runs a search statement.
inline constexpr std::string_view kSearchClass = "TsmSQL";
inline constexpr std::string_view kSearchProvider = "dspSQL";
/// Searches of dialogs that a document runs by itself (grouping); the same as kSearchProvider.
inline constexpr std::string_view kDialogSearchProvider = "dspUseForDialogSearch";

/// Users (WSysUsers), as offered where a user is chosen.
inline constexpr auto ShortName = String("ShortName", 10, Key, "Код");
inline constexpr auto UserName = String("UserName", 30, Plain, "Име");
inline constexpr auto UserName2 = String("UserName2", 30, Plain, "Име2");

/// TsmLevelsApproval.GetCurremtEmployee: [0] login; answer [0] employee code, 0 when the user has
/// no employee record, -1 when there is more than one.
inline constexpr std::string_view kLevelsApprovalClass = "TsmLevelsApproval";
inline constexpr std::string_view kGetCurrentEmployee = "GetCurremtEmployee";

/// TsmLevelsApproval.CountWaiting: no arguments; answer [0] how many documents wait for the asker's
/// decision today, [1] an array of [kind of register, identifier of the first one], one per kind of
/// which some wait.
inline constexpr std::string_view kCountWaiting = "CountWaiting";

/// TsmParameters.GetParams: [0] group; answer [0]: an array of [number, text] pairs, one per
/// parameter that has a value. TsmParameters.SetParam: [0] group, [1] number, [2] text or Null, [3]
/// the text or Null that the asker has seen: a value that somebody else changed since is a
/// conflict.
inline constexpr std::string_view kParametersClass = "TsmParameters";
inline constexpr std::string_view kGetParams = "GetParams";
inline constexpr std::string_view kSetParam = "SetParam";

/// Groups of the parameter store.
inline constexpr int kHostGroup = 1;
inline constexpr int kModuleGroup = 11;

}  // namespace orvane::system
