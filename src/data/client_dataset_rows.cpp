// Cursor, finding rows, and the order in which they are shown.

#include <algorithm>
#include <cassert>

#include "data/client_dataset.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {

std::optional<RowId> TVosClientDataSet::Impl::CurrentRow() const {
  return position < order.size() ? std::optional<RowId>(order[position]) : std::nullopt;
}

std::optional<std::size_t> TVosClientDataSet::Impl::PositionOf(RowId row) const {
  const auto found = std::ranges::find(order, row);
  if (found == order.end()) return std::nullopt;
  return static_cast<std::size_t>(found - order.begin());
}

std::size_t TVosClientDataSet::RecordCount() const {
  return impl_->order.size();
}

std::size_t TVosClientDataSet::RecNo() const {
  return impl_->position;
}

bool TVosClientDataSet::Bof() const {
  return impl_->bof;
}

bool TVosClientDataSet::Eof() const {
  return impl_->eof;
}

// --- moving
// ---------------------------------------------------------------------------------------

bool TVosClientDataSet::Impl::LeaveEdit() {
  if (!Editing()) return true;
  const std::uint64_t before = generation;
  if (modified) {
    self.Post();
  } else {
    self.Cancel();
  }
  return !Editing() && generation == before;
}

void TVosClientDataSet::Impl::MoveTo(std::size_t target) {
  bof = order.empty();
  eof = order.empty();
  if (target == position || order.empty()) return;
  const std::uint64_t before = generation;
  Fire(self.BeforeScroll);
  if (generation != before) return;
  position = std::min(target, order.size() - 1);
  Touch();
  Fire(self.AfterScroll);
}

void TVosClientDataSet::SetRecNo(std::size_t position) {
  if (impl_->Editing() && position == impl_->position) return;
  if (!impl_->LeaveEdit()) return;
  impl_->MoveTo(std::min(position, std::max<std::size_t>(RecordCount(), 1) - 1));
}

void TVosClientDataSet::First() {
  if (!impl_->LeaveEdit()) return;
  const std::uint64_t before = Generation();
  impl_->MoveTo(0);
  if (Generation() == before && impl_->position == 0) impl_->bof = true;
}

void TVosClientDataSet::Last() {
  if (!impl_->LeaveEdit()) return;
  const std::uint64_t before = Generation();
  impl_->MoveTo(std::max<std::size_t>(RecordCount(), 1) - 1);
  if (Generation() == before && impl_->position + 1 >= RecordCount()) impl_->eof = true;
}

void TVosClientDataSet::Next() {
  const std::optional<RowId> current = impl_->CurrentRow();
  if (!impl_->LeaveEdit()) return;
  if (impl_->CurrentRow() != current) return;  // an untouched insert was dropped
  if (impl_->position + 1 >= RecordCount()) {
    impl_->eof = true;
    return;
  }
  impl_->MoveTo(impl_->position + 1);
}

void TVosClientDataSet::Prior() {
  const std::optional<RowId> current = impl_->CurrentRow();
  if (!impl_->LeaveEdit()) return;
  if (impl_->CurrentRow() != current) return;
  if (impl_->position == 0) {
    impl_->bof = true;
    return;
  }
  impl_->MoveTo(impl_->position - 1);
}

void TVosClientDataSet::Impl::RestoreCursor(std::optional<RowId> row, std::size_t place) {
  const auto found = row ? PositionOf(*row) : std::nullopt;
  const std::size_t last = order.empty() ? 0 : order.size() - 1;
  position = found ? *found : std::min(place, last);
  bof = order.empty();
  eof = order.empty();
}

// --- values of any row
// ----------------------------------------------------------------------------

Variant TVosClientDataSet::ValueAt(std::size_t position, const TField& field) const {
  if (position >= impl_->order.size()) return {};
  return impl_->ValueOf(impl_->order[position], field);
}

std::string TVosClientDataSet::TextAt(std::size_t position, const TField& field) const {
  if (!field.OnGetRowText) return field.TextOf(ValueAt(position, field));
  const auto kept = field.OnGetRowText;
  return kept(RowAt(position));
}

RowReader TVosClientDataSet::RowAt(std::size_t position) const {
  return [this, position](std::string_view field) { return ValueAt(position, FieldByName(field)); };
}

RowReader TVosClientDataSet::RowAt(const Bookmark& row) const {
  if (row.generation != impl_->generation) return [](std::string_view) { return Variant(); };
  return [this, row](std::string_view field) {
    return impl_->store.Value(static_cast<RowId>(row.row), FieldByName(field).column_);
  };
}

// --- finding
// --------------------------------------------------------------------------------------

std::optional<std::size_t> TVosClientDataSet::Impl::Find(const TField& field,
                                                         const Variant& value) const {
  if (field.lookup_) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (ValueOf(order[i], field) == value) return i;
    }
    return std::nullopt;
  }
  const Answer<Variant> sought = value.As(field.def_.kind);
  if (!sought) return std::nullopt;
  auto index = std::ranges::find(indexes, field.column_, &ColumnIndex::Column);
  if (index == indexes.end()) {
    indexes.push_back(ColumnIndex(field.column_));
    index = std::prev(indexes.end());
  }
  // A row being entered at the end is taken up once it is posted.
  std::span<const RowId> rows(order);
  if (state == DataSetState::Insert && !rows.empty() && rows.back() == editRow) {
    rows = rows.first(rows.size() - 1);
  }
  return index->Find(store, rows, CellOf(*sought, field.def_.kind));
}

std::optional<std::size_t> TVosClientDataSet::Impl::Find(const NamedValues& values) const {
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool same = std::ranges::all_of(values, [&](const NamedValue& sought) {
      const TField& field = self.FieldByName(sought.name);
      const Answer<Variant> value = sought.value.As(field.def_.kind);
      return value && ValueOf(order[i], field) == *value;
    });
    if (same) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> TVosClientDataSet::Find(std::string_view field,
                                                   const Variant& value) const {
  return impl_->Find(FieldByName(field), value);
}

std::optional<std::size_t> TVosClientDataSet::Find(const NamedValues& values) const {
  return impl_->Find(values);
}

bool TVosClientDataSet::Impl::GoToFound(std::optional<std::size_t> found) {
  if (!found) return false;
  const RowId row = order[*found];
  if (Editing()) {
    if (row == editRow) return true;
    if (modified || !LeaveEdit()) return false;
  }
  const auto place = PositionOf(row);
  if (place) MoveTo(*place);
  return place.has_value();
}

bool TVosClientDataSet::Locate(std::string_view field, const Variant& value) {
  return impl_->GoToFound(Find(field, value));
}

bool TVosClientDataSet::Locate(const NamedValues& values) {
  return impl_->GoToFound(Find(values));
}

Bookmark TVosClientDataSet::GetBookmark() const {
  const auto row = impl_->CurrentRow();
  return {Generation(), row ? *row : ~std::uint64_t{0}};
}

bool TVosClientDataSet::GotoBookmark(const Bookmark& bookmark) {
  if (bookmark.generation != Generation()) return false;
  const auto isIt = [&](RowId row) { return row == bookmark.row; };
  if (std::ranges::none_of(impl_->order, isIt) || !impl_->LeaveEdit()) return false;
  const auto place = std::ranges::find_if(impl_->order, isIt);
  if (place == impl_->order.end()) return false;
  impl_->MoveTo(static_cast<std::size_t>(place - impl_->order.begin()));
  return true;
}

// --- order
// ----------------------------------------------------------------------------------------

void TVosClientDataSet::Impl::RemoveFromOrder(RowId row) {
  std::erase(order, row);
  indexes.clear();
}

void TVosClientDataSet::Impl::InsertIntoOrder(RowId row, std::size_t place) {
  if (place < order.size()) indexes.clear();
  order.insert(order.begin() + static_cast<std::ptrdiff_t>(std::min(place, order.size())), row);
}

void TVosClientDataSet::Impl::PlaceRow(RowId row) {
  const auto place = PositionOf(row);
  if (indexColumns.empty() || !place) return;
  std::vector<RowId> others = order;
  others.erase(others.begin() + static_cast<std::ptrdiff_t>(*place));
  const std::size_t belongs = PlaceInOrder(store, indexColumns, others, row);
  if (belongs == *place) return;
  const std::optional<RowId> current = CurrentRow();
  order = std::move(others);
  order.insert(order.begin() + static_cast<std::ptrdiff_t>(belongs), row);
  indexes.clear();
  if (current) position = *PositionOf(*current);
}

void TVosClientDataSet::Impl::PutRow(RowId row, std::vector<Variant> values) {
  const std::vector<Variant> before = store.Values(row);
  store.Put(row, std::move(values));
  bool ordered = false;
  for (std::size_t column = 0; column < dataDefs.size(); ++column) {
    if (store.Value(row, column) == before[column]) continue;
    std::erase_if(indexes, [&](const ColumnIndex& index) { return index.Column() == column; });
    ordered = ordered || std::ranges::find(indexColumns, column) != indexColumns.end();
  }
  if (ordered) PlaceRow(row);
}

}  // namespace orvane::data
