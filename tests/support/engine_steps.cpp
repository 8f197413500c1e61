#include "support/engine_steps.h"

#include <gtest/gtest.h>

namespace orvane::support {

Statement Sql(std::string text, VariantArray params, std::vector<ResultColumn> columns) {
  return {std::move(text), std::move(params), std::move(columns)};
}

void Do(Database& database, const Statement& statement) {
  auto transaction = database.Begin();
  ASSERT_TRUE(transaction) << transaction.GetFailure().text;
  const auto touched = (*transaction)->Execute(statement);
  ASSERT_TRUE(touched) << touched.GetFailure().text << "\n" << statement.text;
  const auto committed = (*transaction)->Commit();
  ASSERT_TRUE(committed) << committed.GetFailure().text;
}

Variant Ask(Database& database, std::string text, ValueKind kind, VariantArray params) {
  const Statement statement = Sql(std::move(text), std::move(params), {{"Value", kind, 0}});
  const auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) {
    ADD_FAILURE() << packets.GetFailure().text << "\n" << statement.text;
    return {};
  }
  return packets->front().rowCount == 0 ? Variant() : packets->front().At(0, 0);
}

std::int64_t AskNumber(Database& database, std::string text, VariantArray params) {
  return Ask(database, std::move(text), ValueKind::Code, std::move(params)).AsInt().value_or(-1);
}

std::string NameOf(EngineErrorKind kind) {
  switch (kind) {
    case EngineErrorKind::Unique:
      return "Unique";
    case EngineErrorKind::ForeignKey:
      return "ForeignKey";
    case EngineErrorKind::NotNull:
      return "NotNull";
    case EngineErrorKind::Check:
      return "Check";
    case EngineErrorKind::Retry:
      return "Retry";
    case EngineErrorKind::Locked:
      return "Locked";
    case EngineErrorKind::Full:
      return "Full";
    case EngineErrorKind::Late:
      return "Late";
    case EngineErrorKind::Limit:
      return "Limit";
    case EngineErrorKind::TooLarge:
      return "TooLarge";
    case EngineErrorKind::LinkDown:
      return "LinkDown";
    case EngineErrorKind::Other:
      break;
  }
  return "Other";
}

}  // namespace orvane::support
