#include "support/demo_rows.h"

#include <gtest/gtest.h>

namespace orvane::support {

DataPacket ReadDemoTable(Database& database, const DemoTable& table, const std::string& where) {
  std::string names;
  std::string order;
  std::vector<ResultColumn> columns;
  for (const DemoColumn& column : table.columns) {
    if (!names.empty()) names += ", ";
    names += column.name;
    if (columns.size() < table.keyColumns) order = names;
    columns.push_back({std::string(column.name), column.kind, 0});
  }
  Statement select;
  select.text.append("select ").append(names).append(" from ").append(table.name);
  if (!where.empty()) select.text.append(" where ").append(where);
  select.text.append(" order by ").append(order);
  select.columns = std::move(columns);
  const auto packets = database.ReadSnapshot({&select, 1});
  if (packets) return packets->front();
  ADD_FAILURE() << packets.GetFailure().text << "\n" << select.text;
  return {};
}

}  // namespace orvane::support
