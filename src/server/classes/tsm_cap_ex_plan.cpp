#include <charconv>
#include <cstdlib>

#include "contract/cap_ex_plan.h"
#include "contract/workflow.h"
#include "packet/fold.h"
#include "server/classes/server_classes.h"
#include "server/documents/navigation.h"
#include "server/providers/arguments.h"
#include "server/providers/row_checks.h"
#include "server/providers/work.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

using namespace cap_ex_plan;
using namespace cap_ex_plan::get_record;

namespace {

constexpr std::string_view kUniqueCode[] = {"Code"};
constexpr UniqueRule kUnique[] = {
    {kUniqueCode, "Вече има позиция {Code} в плана. Изберете друг код."},
};
constexpr RangeRule kRanges[] = {
    {cap_ex_plan::Code, 1, kHighestCode, "Кодът на позиция е от 1 до 999999999."},
};
constexpr UsedByRule kUsedBy[] = {
    {"Code", "SuppliesContracts", "CapExPlanCode",
     "Позиция {Code} от плана се ползва в договор за доставка {used} и остава, докато има такива "
     "договори.",
     "IdNumber"},
};

Answer<Done, Setback> BeforeWrite(WriteContext&, std::span<PreparedChange> changes) {
  return WithinRanges(changes, kRanges);
}

/// Where a call leads: the rows beyond (or at) a code, how many of them, and in which direction.
struct Way {
  std::string_view where;
  bool forward = true;
  int steps = 1;
  LoadCode end = LoadCode::Last;  ///< told when fewer rows lie there
};

Way WayOf(Nav nav, int offset) {
  switch (nav) {
    case Nav::First:
      return {"1 = 1", true, 1, LoadCode::First};
    case Nav::Last:
      return {"1 = 1", false, 1, LoadCode::Last};
    case Nav::Previous:
      return {"Code < :Code", false, 1, LoadCode::First};
    case Nav::Next:
      return {"Code > :Code", true, 1, LoadCode::Last};
    case Nav::Step:
      if (offset > 0) return {"Code > :Code", true, offset, LoadCode::Last};
      if (offset < 0) return {"Code < :Code", false, -offset, LoadCode::First};
      break;
    case Nav::ByKey:
      break;
  }
  return {"Code = :Code", true, 1, LoadCode::None};
}

Statement SelectWay(const Way& way, std::int64_t code) {
  std::string text = "select ";
  for (const FieldDef& field : dspCapExPlan.fields)
    text += (&field == dspCapExPlan.fields.data() ? "" : ", ") + std::string(field.name);
  text += " from CapExPlan where " + std::string(way.where) + " order by Code" +
          (way.forward ? "" : " desc") + " limit " + std::to_string(way.steps);
  return Named(text, {{"Code", code}}, ColumnsOf(dspCapExPlan));
}

/// The row where the way ends, alone.
DataPacket LastRow(const DataPacket& rows) {
  DataPacket packet;
  VariantArray values;
  for (const FieldDef& field : dspCapExPlan.fields) {
    packet.AddColumn(field.name, field.kind, field.size);
    if (rows.rowCount > 0) values.push_back(rows.At(rows.rowCount - 1, field.name));
  }
  if (!values.empty()) packet.AppendRow(values);
  return packet;
}

/// An empty code stands before the plan; a text that is no code is none.
std::optional<std::int64_t> CodeOf(const Variant& sent) {
  const std::string* text = sent.AsString();
  if (!text) return sent.IsNull() ? std::optional<std::int64_t>(0) : sent.AsInt();
  const std::string_view digits = Trim(*text);
  std::int64_t code = 0;
  if (digits.empty()) return code;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return code;
}

bool IsEnd(Nav nav) {
  return nav == Nav::First || nav == Nav::Last;
}

Answer<VariantArray> GetRecord(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Mode", ValueKind::Byte, Need::Needed},
      {"Offset", ValueKind::Int16, Need::Needed},
      {"Code", ValueKind::Code, Need::OrText},
  };
  const auto sound = CheckArguments(get_record::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto nav = NavOf(ask[kMode]);
  const auto offset = ask[kOffset].AsInt();
  const auto code = CodeOf(ask[kCode]);
  constexpr int kLongestOffset = 127;
  if (!nav || !offset || std::abs(*offset) > kLongestOffset || !code) {
    return Failure{FailureKind::BadRequest, "Методът „GetRecord“ очаква посока, отместване и код."};
  }
  const Way way = WayOf(*nav, static_cast<int>(*offset));
  const Statement select = SelectWay(way, *code);
  const auto packets = work.Read({&select, 1});
  if (!packets) return packets.GetFailure();
  const DataPacket& rows = packets->front();
  const bool took = rows.rowCount == static_cast<std::size_t>(way.steps);
  const LoadCode state = took && !IsEnd(*nav) ? LoadCode::Between : way.end;
  return VariantArray{Variant(rows.rowCount > 0), Variant(static_cast<int>(state)),
                      Variant(LastRow(rows))};
}

}  // namespace

ServerClass TsmCapExPlan() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::CapExPlan})
      .Provider(dspCapExPlan, {},
                {.unique = kUnique, .usedBy = kUsedBy, .beforeWrite = &BeforeWrite})
      .Operation(get_record::kName, Rule::Open, &GetRecord);
}

}  // namespace orvane::server
