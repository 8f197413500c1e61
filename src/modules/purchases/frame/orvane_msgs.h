#pragma once

// Messages that the documents share. %s is filled by the caller with Filled.

#include <string_view>

#include "kit/message_text.h"

namespace orvane::modules {

inline constexpr std::string_view _rCannotWork =
    "Нямате права за работа с екрана. Липсва информация за Вас в таблица \"Служители\"";
inline constexpr std::string_view _rNoCurrentEmployee = "Понятие 'Текущ потребител' няма стойност";
inline constexpr std::string_view _rNoCostCenters =
    "За заявител '%s' няма допустими центрове за разход";
inline constexpr std::string_view _rValueRequired = "Попълнете поле '%s'";
inline constexpr std::string_view _rForConfirmation =
    "Желаете ли да промените статуса на дакумента на 'За одобрение'?";
inline constexpr std::string_view _rCorrection = "Корекция на документа?";
inline constexpr std::string_view _rAnnul = "Анулиране на документа?";
inline constexpr std::string_view _rApprove = "Одобряване на документа?";
inline constexpr std::string_view _rRemoveApproval = "Премахване на одобрението?";
inline constexpr std::string_view _rReject = "Отхвърляне на документа?";
inline constexpr std::string_view _rRemoveRejection = "Премахване на отхвърлянето?";
inline constexpr std::string_view _rCompletion = "Приключване на документа?";
inline constexpr std::string_view _rRemoveCompletion = "Премахване на приключването?";
inline constexpr std::string_view _rParamCentralBankIsEmpty =
    "Параметър \"Централна банка\" не е попълнен!";
inline constexpr std::string_view _rParamBGNKindCurrencyIsEmpty =
    "Параметър \"Вид валута BGN\" не е попълнен!";
inline constexpr std::string_view _rParamBRMIsEmpty = "Параметър Вид покупка \"ОСМ\" няма стойност";
inline constexpr std::string_view _rParamWaresIsEmpty =
    "Параметър Вид покупка \"Стоки\" няма стойност";
inline constexpr std::string_view _rDescription = "Описание";
inline constexpr std::string_view _rReason = "Обосновка";
inline constexpr std::string_view _rRemarks = "Бележки";
inline constexpr std::string_view _rBGLanguageName = " <Български>";
inline constexpr std::string_view _rDocNotFound = "Документ %s не е намерен!";

}  // namespace orvane::modules
