#pragma once

// How a screen is put together, as one nested value indented like the screen:
//
//   Column{Ribbon(), Row{Of(eIdNum), Bar(alNavigateY)}, Row{Of(diMainInfo), Of(diAdminInfo)},
//   Of(pcTables)}

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "packet/floors.h"

namespace orvane::host {

class Control;
struct TAction;

struct RibbonGroup {
  std::string caption;
  std::vector<std::string> actions;  ///< names; columns of three
};

struct RibbonTab {
  std::string caption;
  std::vector<RibbonGroup> groups;
};

enum class LayoutKind : unsigned char { Column, Row, Widget, Bar, Space };

/// A node of the layout. Weights share what is left over along the parent's direction; 0 takes only
/// what it needs.
struct LayoutNode {
  LayoutKind kind = LayoutKind::Column;
  std::vector<LayoutNode> children;
  Control* control = nullptr;
  std::vector<std::string> actions;  ///< of a Bar (navigation), names in order
  int weight = 0;
};

inline LayoutNode Of(Control& control, int weight = 0) {
  LayoutNode node{LayoutKind::Widget, {}, &control, {}, weight};
  return node;
}
inline LayoutNode BarOf(std::vector<std::string> actions) {
  return {LayoutKind::Bar, {}, nullptr, std::move(actions), 0};
}
inline LayoutNode SpaceOf(int weight = 1) {
  return {LayoutKind::Space, {}, nullptr, {}, weight};
}
inline LayoutNode ColumnOf(std::vector<LayoutNode> children, int weight = 1) {
  return {LayoutKind::Column, std::move(children), nullptr, {}, weight};
}
inline LayoutNode RowOf(std::vector<LayoutNode> children, int weight = 0) {
  return {LayoutKind::Row, std::move(children), nullptr, {}, weight};
}

}  // namespace orvane::host
