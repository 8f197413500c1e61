#include "server/providers/row_lock.h"

#include <string>

#include "server/sessions/statements.h"

namespace orvane::server {

Answer<Done, Setback> LockRow(WriteContext& context, std::string_view table,
                              std::string_view keyColumn, const Variant& key) {
  if (context.work.EngineKind() != Engine::Postgres || key.IsNull()) return Done{};
  const std::string column(keyColumn);
  std::string lock = "select ";
  lock.append(column).append(" from ").append(table);
  lock.append(" where ").append(column).append(" = ?1 for update");
  const auto locked =
      context.transaction.Query(Select(lock, {key}, {{column, ValueKind::Code, 0}}));
  if (!locked) return ToSetback(locked.GetFailure(), "locking a row");
  return Done{};
}

}  // namespace orvane::server
