#include "data/fake_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace orvane::data::test {

std::size_t FakeServer::ColumnOf(std::string_view name) const {
  for (std::size_t i = 0; i < table_.fields.size(); ++i) {
    if (SameName(table_.fields[i].name, name)) return i;
  }
  ADD_FAILURE() << "no column " << name;
  return 0;
}

NamedValues FakeServer::Named(const std::vector<Variant>& values) const {
  NamedValues named;
  for (std::size_t i = 0; i < values.size(); ++i)
    named.push_back({std::string(table_.fields[i].name), values[i]});
  return named;
}

DataPacket FakeServer::Rows(std::string_view column, const Variant& value) const {
  DataPacket packet;
  for (const FieldDef& field : table_.fields)
    packet.AddColumn(field.name, field.kind, field.size);
  for (const auto& [id, values] : rows) {
    if (column.empty() || values[ColumnOf(column)] == value) packet.AppendRow(values);
  }
  return packet;
}

FakeServer::FakeServer() {
  Put(1, "Ана");
  Put(2, "Боби");
  Put(3, "Вера");
}

void FakeServer::Put(int id, std::string_view name, std::optional<int> unit) {
  rows[id] = {id, name, Variant(), unit ? Variant(*unit) : Variant(), Variant()};
}

std::string FakeServer::Text() const {
  std::string text;
  for (const auto& [id, values] : rows)
    text += (text.empty() ? "" : ", ") + std::to_string(id) + " " + values[1].ToText();
  return text;
}

Answer<std::vector<DataPacket>> FakeServer::Fetch(const Caller&,
                                                  const std::vector<FetchRequest>& requests) {
  fetches.push_back(requests);
  if (link != Link::Whole) return Failure{FailureKind::LinkDown, "Няма връзка."};
  std::vector<DataPacket> packets;
  for (const FetchRequest& request : requests)
    packets.push_back(answers ? answers(request) : Rows());
  return packets;
}

Answer<ApplyAnswer> FakeServer::Apply(const Caller&, const ApplyRequest& request) {
  applies.push_back(request);
  if (link == Link::CutBefore) return Failure{FailureKind::OutcomeUnknown, "Няма връзка."};
  if (wholeFailure) return *std::exchange(wholeFailure, std::nullopt);
  if (breaksAfter >= 0 && --breaksAfter == 0) link = Link::CutBefore;
  const bool loses = link == Link::CutAfter;
  ApplyAnswer answer = CarryOut(request);
  answer.ownerData = ownerDataAnswer;
  if (loses) return Failure{FailureKind::OutcomeUnknown, "Няма връзка."};
  return answer;
}

ApplyAnswer FakeServer::CarryOut(const ApplyRequest& request) {
  const auto rowsBefore = rows;
  const auto answeredBefore = answered_;
  ApplyAnswer answer;
  for (const Change& change : request.delta) {
    answer.outcomes.push_back(CarryOut(change));
    if (answer.outcomes.back().applied || request.maxErrors != 0) continue;
    rows = rowsBefore;
    answered_ = answeredBefore;
    for (ChangeOutcome& outcome : answer.outcomes)
      outcome.applied = false;
    answer.outcomes.resize(request.delta.size());
    break;
  }
  return answer;
}

ChangeOutcome FakeServer::CarryOut(const Change& change) {
  if (const auto known = answered_.find(change.clientKey); known != answered_.end()) {
    return known->second;
  }
  ChangeOutcome outcome;
  if (refuses) outcome.failure = refuses(change);
  if (outcome.failure) return outcome;
  const NamedValues& keyed = change.kind == ChangeKind::Insert ? change.after : change.before;
  std::int64_t id = FindValue(keyed, "Id")->AsInt().value_or(-1);
  if (change.kind == ChangeKind::Insert) {
    if (id < 0) {
      id = nextId_++;
      outcome.filled = {{"Id", id}};
    }
    if (rows.contains(id)) {
      outcome.failure = Refused("Номерът се използва.");
      return outcome;
    }
    rows[id].resize(table_.fields.size());
  }
  const auto row = rows.find(id);
  const bool same =
      row != rows.end() && std::ranges::all_of(change.before, [&](const NamedValue& old) {
        return row->second[ColumnOf(old.name)] == old.value;
      });
  if (!same) {
    outcome.failure = Failure{FailureKind::Conflict, "Редът е променен от друг."};
    if (row != rows.end()) outcome.present = Named(row->second);
    return outcome;
  }
  for (const NamedValue& value : change.after)
    row->second[ColumnOf(value.name)] = value.value;
  row->second[0] = id;
  if (change.kind == ChangeKind::Delete) rows.erase(row);
  outcome.applied = true;
  ++carriedOut;
  answered_[change.clientKey] = outcome;
  return outcome;
}

Answer<VariantArray> FakeServer::Call(const Caller&, const MethodCall& call) {
  calls.push_back(call);
  if (link != Link::Whole) return Failure{FailureKind::LinkDown, "Няма връзка."};
  return call.arguments;
}

Desk::Desk()
    : connection(session, {11, 1}, "TsmItem"),
      items("cdsItems", connection, item::dspItem),
      source(items) {
  session.server = &server;
  session.info.sessionName = "desk";
  Open();
}

void Desk::Open() {
  items.Open();
  connection.Close();
  server.fetches.clear();
  session.calls = 0;
  notes.clear();
}

void Desk::NoteEvents() {
  const auto note = [this](const char* what) { return [this, what] { Note(what); }; };
  items.BeforeInsert = note("BeforeInsert");
  items.OnNewRecord = note("OnNewRecord");
  items.BeforeEdit = note("BeforeEdit");
  items.BeforePost = note("BeforePost");
  items.AfterPost = note("AfterPost");
  items.AfterCancel = note("AfterCancel");
  items.BeforeDelete = note("BeforeDelete");
  items.AfterDelete = note("AfterDelete");
  items.BeforeScroll = note("BeforeScroll");
  items.AfterScroll = note("AfterScroll");
  items.BeforeApplyUpdates = note("BeforeApply");
  items.AfterApplyUpdates = [this](const Variant& ownerData) {
    Note("AfterApply(" + ownerData.ToText() + ")");
  };
  source.OnStateChange = [this] {
    constexpr const char* kStates[] = {"Inactive", "Browse", "Edit", "Insert"};
    Note(kStates[static_cast<std::size_t>(items.State())]);
  };
  for (TField* field : items.Fields())
    field->OnChange = [this, field] { Note(std::string(field->Name()) + "=" + field->Text()); };
}

std::string Desk::Noted() {
  return std::exchange(notes, {});
}

void Desk::Type(int id, const std::string& values) {
  EXPECT_TRUE(items.Locate("Id", id));
  items.Edit();
  Fill(values);
}

void Desk::TypeNew(const std::string& values) {
  items.Append();
  Fill(values);
}

void Desk::Fill(const std::string& values) {
  std::istringstream words(values);
  for (std::string word; words >> word;) {
    const std::size_t sign = word.find('=');
    const auto typed = items.FieldByName(word.substr(0, sign)).SetText(word.substr(sign + 1));
    EXPECT_TRUE(typed.Ok()) << word;
  }
}

std::string Shown(const TVosClientDataSet& dataSet) {
  std::string text;
  const TField& id = dataSet.FieldByName("Id");
  const TField& name = dataSet.FieldByName("Name");
  for (std::size_t i = 0; i < dataSet.RecordCount(); ++i) {
    const std::string row = dataSet.TextAt(i, id) + " " + dataSet.TextAt(i, name);
    text += (text.empty() ? "" : ", ") + (i == dataSet.RecNo() ? "[" + row + "]" : row);
  }
  return text;
}

std::string TextOf(const Change& change) {
  const auto valueOf = [](const NamedValues& values, std::string_view name) {
    const Variant* value = FindValue(values, name);
    return value == nullptr ? std::string() : value->ToText();
  };
  if (change.kind == ChangeKind::Insert) {
    return "insert " + valueOf(change.after, "Id") + " " + valueOf(change.after, "Name");
  }
  if (change.kind == ChangeKind::Delete) return "delete " + valueOf(change.before, "Id");
  std::string text = "update " + valueOf(change.before, "Id");
  for (const NamedValue& value : change.after) {
    text +=
        " " + value.name + ": " + valueOf(change.before, value.name) + " → " + value.value.ToText();
  }
  return text;
}

std::string TextOf(const Delta& delta) {
  std::string text;
  for (const Change& change : delta)
    text += (text.empty() ? "" : "; ") + TextOf(change);
  return text;
}

}  // namespace orvane::data::test
