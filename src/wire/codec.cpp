#include "wire/codec.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include "packet/fold.h"

namespace orvane::wire {
namespace {

constexpr std::int32_t kMinutesOfDay = 24 * 60;

/// The enumerations of the wire are those of the door, moved by one: zero is "not set" there.
template <class WireEnum, class DoorEnum>
WireEnum OnWire(DoorEnum value) {
  return static_cast<WireEnum>(static_cast<int>(value) + 1);
}

static_assert(static_cast<int>(FailureKind::Internal) + 1 == v1::FAILURE_KIND_INTERNAL);
static_assert(static_cast<int>(ValueKind::Memo) + 1 == v1::VALUE_KIND_MEMO);
static_assert(static_cast<int>(ChangeKind::Delete) + 1 == v1::CHANGE_KIND_DELETE);

/// False when the number is none of the first to the last of the door's.
template <class DoorEnum>
bool FromWire(int number, DoorEnum last, DoorEnum& value) {
  if (number < 1 || number > static_cast<int>(last) + 1) return false;
  value = static_cast<DoorEnum>(number - 1);
  return true;
}

template <class T, class Field>
std::vector<T> ToVector(const Field& field) {
  return std::vector<T>(field.begin(), field.end());
}

template <class T, class Field>
void Fill(Field& field, const std::vector<T>& values) {
  field.Add(values.begin(), values.end());
}

/// The texts of a column that is given away are moved.
template <class Column>
void EncodeColumn(Column&& column, v1::Column& message) {
  message.set_name(std::forward<Column>(column).name);
  message.set_kind(OnWire<v1::ValueKind>(column.kind));
  message.set_size(column.size);
  Fill(*message.mutable_nulls(), column.nulls);
  Fill(*message.mutable_integers(), column.integers);
  Fill(*message.mutable_reals(), column.reals);
  message.set_heap(std::forward<Column>(column).heap);
  Fill(*message.mutable_ends(), column.ends);
}

bool DecodeColumn(v1::Column& message, PacketColumn& column) {
  if (!FromWire(message.kind(), ValueKind::Memo, column.kind)) return false;
  if (message.size() > std::numeric_limits<std::uint16_t>::max()) return false;
  column.name = std::move(*message.mutable_name());
  column.size = static_cast<std::uint16_t>(message.size());
  column.nulls = ToVector<std::uint64_t>(message.nulls());
  column.integers = ToVector<std::int64_t>(message.integers());
  column.reals = ToVector<double>(message.reals());
  column.heap = std::move(*message.mutable_heap());
  column.ends = ToVector<std::uint32_t>(message.ends());
  return true;
}

template <class Packet>
void EncodePacket(Packet&& packet, v1::Packet& message) {
  message.mutable_columns()->Reserve(static_cast<int>(packet.columns.size()));
  for (auto& column : packet.columns) {
    if constexpr (std::is_lvalue_reference_v<Packet>) {
      EncodeColumn(column, *message.add_columns());
    } else {
      EncodeColumn(std::move(column), *message.add_columns());
    }
  }
  message.set_row_count(packet.rowCount);
  message.set_continuation(std::forward<Packet>(packet).continuation);
}

bool DecodeValue(v1::Value& message, Variant& value, int depth);

template <class Values>
bool DecodeValues(Values& messages, VariantArray& values, int depth) {
  values.resize(static_cast<std::size_t>(messages.size()));
  for (int i = 0; i < messages.size(); ++i) {
    if (!DecodeValue(messages[i], values[static_cast<std::size_t>(i)], depth)) return false;
  }
  return true;
}

bool DecodeArray(v1::Array& message, Variant& value, int depth) {
  VariantArray values;
  if (depth > kMaxArrayDepth) return false;
  if (!DecodeValues(*message.mutable_values(), values, depth)) return false;
  value = Variant(std::move(values));
  return true;
}

bool DecodeDecimal(const v1::Decimal& message, Variant& value) {
  if (message.scale() > static_cast<std::uint32_t>(Decimal::kMaxScale)) return false;
  value = Decimal(message.mantissa(), static_cast<int>(message.scale()));
  return true;
}

bool DecodeDate(std::int32_t days, Variant& value) {
  constexpr ValueKindRow kRow = RowOf(ValueKind::Date);
  value = Date{days};
  return days >= kRow.lowest && days <= kRow.highest;
}

/// Moments of the days that a Date may be: neither engine has others.
bool IsMoment(std::int64_t micros) {
  constexpr ValueKindRow kDays = RowOf(ValueKind::Date);
  constexpr std::int64_t kDay = 86'400'000'000;
  return micros >= kDays.lowest * kDay && micros < (kDays.highest + 1) * kDay;
}

/// Whether a column of stamps holds no other.
bool HoldsMoments(const PacketColumn& column) {
  return column.kind != ValueKind::Stamp ||
         std::all_of(column.integers.begin(), column.integers.end(), IsMoment);
}

bool DecodePacket(v1::Packet& message, Variant& value) {
  DataPacket packet;
  if (!Decode(message, packet)) return false;
  value = Variant(std::move(packet));
  return true;
}

bool DecodeText(std::string& text, Variant& value) {
  if (!IsUtf8(text)) return false;
  value = Variant(std::move(text));
  return true;
}

/// `depth` is that of the arrays around the value.
bool DecodeValue(v1::Value& message, Variant& value, int depth) {
  switch (message.kind_case()) {
    case v1::Value::kFlag:
      value = message.flag();
      return true;
    case v1::Value::kInteger:
      value = std::int64_t{message.integer()};
      return true;
    case v1::Value::kReal:
      value = message.real();
      return std::isfinite(message.real());
    case v1::Value::kDecimal:
      return DecodeDecimal(message.decimal(), value);
    case v1::Value::kDate:
      return DecodeDate(message.date(), value);
    case v1::Value::kStamp:
      value = Stamp{message.stamp()};
      return IsMoment(message.stamp());
    case v1::Value::kText:
      return DecodeText(*message.mutable_text(), value);
    case v1::Value::kPacket:
      return DecodePacket(*message.mutable_packet(), value);
    case v1::Value::kArray:
      return DecodeArray(*message.mutable_array(), value, depth + 1);
    case v1::Value::KIND_NOT_SET:
      break;
  }
  value = Variant();
  return true;
}

/// Writes each alternative of a Variant in its own field; null sets none.
struct ValueWriter {
  v1::Value& message;

  void operator()(std::monostate) const {}
  void operator()(bool value) const { message.set_flag(value); }
  void operator()(std::int64_t value) const { message.set_integer(value); }
  void operator()(double value) const { message.set_real(value); }
  void operator()(Decimal value) const {
    message.mutable_decimal()->set_mantissa(value.Mantissa());
    message.mutable_decimal()->set_scale(static_cast<std::uint32_t>(value.Scale()));
  }
  void operator()(Date value) const { message.set_date(value.days); }
  void operator()(Stamp value) const { message.set_stamp(value.micros); }
  void operator()(const std::string& value) const { message.set_text(value); }
  void operator()(const std::shared_ptr<const DataPacket>& value) const {
    EncodePacket(*value, *message.mutable_packet());
  }
  void operator()(const std::shared_ptr<const VariantArray>& value) const {
    v1::Array& array = *message.mutable_array();
    for (const Variant& element : *value)
      Encode(element, *array.add_values());
  }
};

using NamedValueMessages = google::protobuf::RepeatedPtrField<v1::NamedValue>;

void EncodeNamed(const NamedValues& values, NamedValueMessages& messages) {
  messages.Reserve(static_cast<int>(values.size()));
  for (const NamedValue& value : values) {
    v1::NamedValue& message = *messages.Add();
    message.set_name(value.name);
    if (!value.value.IsNull()) Encode(value.value, *message.mutable_value());
  }
}

bool DecodeNamed(NamedValueMessages& messages, NamedValues& values) {
  values.resize(static_cast<std::size_t>(messages.size()));
  for (int i = 0; i < messages.size(); ++i) {
    NamedValue& value = values[static_cast<std::size_t>(i)];
    value.name = std::move(*messages[i].mutable_name());
    if (messages[i].has_value() && !Decode(*messages[i].mutable_value(), value.value)) return false;
  }
  return true;
}

void EncodeChange(const Change& change, v1::Change& message) {
  message.set_kind(OnWire<v1::ChangeKind>(change.kind));
  message.set_client_key(change.clientKey);
  EncodeNamed(change.before, *message.mutable_before());
  EncodeNamed(change.after, *message.mutable_after());
}

bool DecodeChange(v1::Change& message, Change& change) {
  if (!FromWire(message.kind(), ChangeKind::Delete, change.kind)) return false;
  change.clientKey = std::move(*message.mutable_client_key());
  return DecodeNamed(*message.mutable_before(), change.before) &&
         DecodeNamed(*message.mutable_after(), change.after);
}

void EncodeOutcome(const ChangeOutcome& outcome, v1::ChangeOutcome& message) {
  message.set_applied(outcome.applied);
  if (outcome.failure) Encode(*outcome.failure, *message.mutable_failure());
  EncodeNamed(outcome.filled, *message.mutable_filled());
  EncodeNamed(outcome.present, *message.mutable_present());
  message.set_changed_by(outcome.changedBy);
  message.set_changed_on_micros(outcome.changedOn.micros);
}

bool DecodeOutcome(v1::ChangeOutcome& message, ChangeOutcome& outcome) {
  outcome.applied = message.applied();
  if (message.has_failure()) outcome.failure = DecodeFailure(*message.mutable_failure());
  outcome.changedBy = std::move(*message.mutable_changed_by());
  outcome.changedOn = {message.changed_on_micros()};
  return DecodeNamed(*message.mutable_filled(), outcome.filled) &&
         DecodeNamed(*message.mutable_present(), outcome.present);
}

bool DecodeZone(const v1::TimeZone& message, TimeZone& zone) {
  zone = {message.offset_minutes(), message.european_summer_time()};
  return zone.offsetMinutes > -kMinutesOfDay && zone.offsetMinutes < kMinutesOfDay;
}

}  // namespace

void Encode(const Failure& failure, v1::Failure& message) {
  message.set_kind(OnWire<v1::FailureKind>(failure.kind));
  message.set_message(failure.message);
}

Failure DecodeFailure(v1::Failure& message) {
  Failure failure;
  if (!FromWire(message.kind(), FailureKind::Internal, failure.kind)) {
    failure.kind = FailureKind::Internal;
  }
  failure.message = std::move(*message.mutable_message());
  return failure;
}

void Encode(const Variant& value, v1::Value& message) {
  std::visit(ValueWriter{message}, value.Raw());
}

bool Decode(v1::Value& message, Variant& value) {
  return DecodeValue(message, value, 0);
}

void Encode(DataPacket&& packet, v1::Packet& message) {
  EncodePacket(std::move(packet), message);
}

bool Decode(v1::Packet& message, DataPacket& packet) {
  packet.columns.resize(static_cast<std::size_t>(message.columns_size()));
  for (int i = 0; i < message.columns_size(); ++i) {
    PacketColumn& column = packet.columns[static_cast<std::size_t>(i)];
    if (!DecodeColumn(*message.mutable_columns(i), column)) return false;
  }
  packet.rowCount = message.row_count();
  packet.continuation = std::move(*message.mutable_continuation());
  return packet.IsSound() &&
         std::all_of(packet.columns.begin(), packet.columns.end(), HoldsMoments);
}

void Encode(const Caller& caller, v1::Caller& message) {
  message.set_ticket(caller.ticket);
  message.set_module_no(caller.moduleNo);
  message.set_point_no(caller.pointNo);
}

Caller DecodeCaller(v1::Caller& message) {
  return {std::move(*message.mutable_ticket()), message.module_no(), message.point_no()};
}

void Encode(const Greeting& greeting, v1::GreetReply& message) {
  message.set_protocol_version(greeting.protocolVersion);
  message.set_company_name(greeting.companyName);
  for (const DemonstrationUser& user : greeting.demonstrationUsers) {
    v1::DemonstrationUser& added = *message.add_demonstration_users();
    added.set_login(user.login);
    added.set_password(user.password);
    added.set_description(user.description);
  }
}

bool Decode(v1::GreetReply& message, Greeting& greeting) {
  greeting.protocolVersion = message.protocol_version();
  greeting.companyName = std::move(*message.mutable_company_name());
  for (v1::DemonstrationUser& user : *message.mutable_demonstration_users()) {
    greeting.demonstrationUsers.push_back({std::move(*user.mutable_login()),
                                           std::move(*user.mutable_password()),
                                           std::move(*user.mutable_description())});
  }
  return true;
}

void Encode(const LoginRequest& request, v1::LogInRequest& message) {
  message.set_protocol_version(request.protocolVersion);
  message.set_login(request.login);
  message.set_password(request.password);
  message.set_machine_name(request.machineName);
  message.set_program_version(request.programVersion);
}

bool Decode(v1::LogInRequest& message, LoginRequest& request) {
  request.protocolVersion = message.protocol_version();
  request.login = std::move(*message.mutable_login());
  request.password = std::move(*message.mutable_password());
  request.machineName = std::move(*message.mutable_machine_name());
  request.programVersion = std::move(*message.mutable_program_version());
  return true;
}

void Encode(const SessionInfo& session, v1::LogInReply& message) {
  message.set_ticket(session.ticket);
  message.set_session_name(session.sessionName);
  message.set_login(session.login);
  message.set_user_name(session.userName);
  message.set_user_name2(session.userName2);
  message.set_user_level(session.userLevel);
  message.set_user_language(session.userLanguage);
  for (const PointRights& rights : session.points) {
    v1::PointRights& added = *message.add_points();
    added.set_point(rights.point);
    added.set_rights(rights.rights);
  }
  message.set_company_name(session.companyName);
  for (const std::string& name : session.languageNames)
    message.add_language_names(name);
  message.mutable_zone()->set_offset_minutes(session.zone.offsetMinutes);
  message.mutable_zone()->set_european_summer_time(session.zone.europeanSummerTime);
  message.set_demonstration(session.demonstration);
}

bool Decode(v1::LogInReply& message, SessionInfo& session) {
  session.ticket = std::move(*message.mutable_ticket());
  session.sessionName = std::move(*message.mutable_session_name());
  session.login = std::move(*message.mutable_login());
  session.userName = std::move(*message.mutable_user_name());
  session.userName2 = std::move(*message.mutable_user_name2());
  session.userLevel = message.user_level();
  session.userLanguage = message.user_language();
  for (const v1::PointRights& rights : message.points()) {
    session.points.push_back({rights.point(), rights.rights()});
  }
  session.companyName = std::move(*message.mutable_company_name());
  session.languageNames = ToVector<std::string>(message.language_names());
  session.demonstration = message.demonstration();
  return DecodeZone(message.zone(), session.zone);
}

void Encode(const Done&, v1::LogOutReply&) {}

bool Decode(v1::LogOutReply&, Done&) {
  return true;
}

void Encode(const std::vector<FetchRequest>& requests, v1::FetchRequest& message) {
  for (const FetchRequest& request : requests) {
    v1::FetchItem& item = *message.add_items();
    item.set_server_class(request.serverClass);
    item.set_provider(request.provider);
    EncodeNamed(request.params, *item.mutable_params());
    item.set_sql(request.sql);
    item.set_row_limit(request.rowLimit);
    item.set_continuation(request.continuation);
  }
}

bool Decode(v1::FetchRequest& message, std::vector<FetchRequest>& requests) {
  for (v1::FetchItem& item : *message.mutable_items()) {
    FetchRequest& request = requests.emplace_back();
    request.serverClass = std::move(*item.mutable_server_class());
    request.provider = std::move(*item.mutable_provider());
    if (!DecodeNamed(*item.mutable_params(), request.params)) return false;
    request.sql = std::move(*item.mutable_sql());
    request.rowLimit = item.row_limit();
    request.continuation = std::move(*item.mutable_continuation());
    if (request.rowLimit < 0) return false;
  }
  return true;
}

void Encode(std::vector<DataPacket>&& packets, v1::FetchReply& message) {
  for (DataPacket& packet : packets)
    Encode(std::move(packet), *message.add_packets());
}

bool Decode(v1::FetchReply& message, std::vector<DataPacket>& packets) {
  packets.resize(static_cast<std::size_t>(message.packets_size()));
  for (int i = 0; i < message.packets_size(); ++i) {
    if (!Decode(*message.mutable_packets(i), packets[static_cast<std::size_t>(i)])) return false;
  }
  return true;
}

void Encode(const ApplyRequest& request, v1::ApplyRequest& message) {
  message.set_server_class(request.serverClass);
  message.set_provider(request.provider);
  message.set_max_errors(request.maxErrors);
  Encode(request.ownerData, *message.mutable_owner_data());
  for (const Change& change : request.delta)
    EncodeChange(change, *message.add_delta());
}

bool Decode(v1::ApplyRequest& message, ApplyRequest& request) {
  request.serverClass = std::move(*message.mutable_server_class());
  request.provider = std::move(*message.mutable_provider());
  request.maxErrors = message.max_errors();
  if (!Decode(*message.mutable_owner_data(), request.ownerData)) return false;
  request.delta.resize(static_cast<std::size_t>(message.delta_size()));
  for (int i = 0; i < message.delta_size(); ++i) {
    Change& change = request.delta[static_cast<std::size_t>(i)];
    if (!DecodeChange(*message.mutable_delta(i), change)) return false;
  }
  return true;
}

void Encode(const ApplyAnswer& answer, v1::ApplyReply& message) {
  for (const ChangeOutcome& outcome : answer.outcomes) {
    EncodeOutcome(outcome, *message.add_outcomes());
  }
  Encode(answer.ownerData, *message.mutable_owner_data());
  EncodeNamed(answer.headMoved, *message.mutable_head_moved());
}

bool Decode(v1::ApplyReply& message, ApplyAnswer& answer) {
  answer.outcomes.resize(static_cast<std::size_t>(message.outcomes_size()));
  for (int i = 0; i < message.outcomes_size(); ++i) {
    ChangeOutcome& outcome = answer.outcomes[static_cast<std::size_t>(i)];
    if (!DecodeOutcome(*message.mutable_outcomes(i), outcome)) return false;
  }
  return Decode(*message.mutable_owner_data(), answer.ownerData) &&
         DecodeNamed(*message.mutable_head_moved(), answer.headMoved);
}

void Encode(const MethodCall& call, v1::CallRequest& message) {
  message.set_server_class(call.serverClass);
  message.set_method(call.method);
  message.set_client_key(call.clientKey);
  for (const Variant& argument : call.arguments)
    Encode(argument, *message.add_arguments());
}

bool Decode(v1::CallRequest& message, MethodCall& call) {
  call.serverClass = std::move(*message.mutable_server_class());
  call.method = std::move(*message.mutable_method());
  call.clientKey = std::move(*message.mutable_client_key());
  return DecodeValues(*message.mutable_arguments(), call.arguments, 0);
}

void Encode(const VariantArray& results, v1::CallReply& message) {
  for (const Variant& result : results)
    Encode(result, *message.add_results());
}

bool Decode(v1::CallReply& message, VariantArray& results) {
  return DecodeValues(*message.mutable_results(), results, 0);
}

}  // namespace orvane::wire
