#pragma once

// Values of the door and messages of the wire, both ways. Messages come from outside: decoding
// believes nothing and answers false for what is damaged (columns that do not fit, kinds out of
// range, text that is no UTF-8, arrays nested too deep), leaving its target in any state.
//
// Encoding takes what it can move: the text of a packet goes into the message and out of it again
// without being copied.

#include <vector>

#include "orvane.pb.h"
#include "packet/application_server.h"

namespace orvane::wire {

/// Arrays of server methods nest no deeper; an array within the arguments is at depth one.
inline constexpr int kMaxArrayDepth = 8;

void Encode(const Failure& failure, v1::Failure& message);
/// A kind this program does not know becomes Internal.
Failure DecodeFailure(v1::Failure& message);

void Encode(const Variant& value, v1::Value& message);
bool Decode(v1::Value& message, Variant& value);

void Encode(DataPacket&& packet, v1::Packet& message);
/// True only for a packet that is sound.
bool Decode(v1::Packet& message, DataPacket& packet);

void Encode(const Caller& caller, v1::Caller& message);
Caller DecodeCaller(v1::Caller& message);

void Encode(const Greeting& greeting, v1::GreetReply& message);
bool Decode(v1::GreetReply& message, Greeting& greeting);

void Encode(const LoginRequest& request, v1::LogInRequest& message);
bool Decode(v1::LogInRequest& message, LoginRequest& request);
void Encode(const SessionInfo& session, v1::LogInReply& message);
bool Decode(v1::LogInReply& message, SessionInfo& session);

void Encode(const Done& done, v1::LogOutReply& message);
bool Decode(v1::LogOutReply& message, Done& done);

void Encode(const std::vector<FetchRequest>& requests, v1::FetchRequest& message);
bool Decode(v1::FetchRequest& message, std::vector<FetchRequest>& requests);
void Encode(std::vector<DataPacket>&& packets, v1::FetchReply& message);
bool Decode(v1::FetchReply& message, std::vector<DataPacket>& packets);

void Encode(const ApplyRequest& request, v1::ApplyRequest& message);
bool Decode(v1::ApplyRequest& message, ApplyRequest& request);
void Encode(const ApplyAnswer& answer, v1::ApplyReply& message);
bool Decode(v1::ApplyReply& message, ApplyAnswer& answer);

void Encode(const MethodCall& call, v1::CallRequest& message);
bool Decode(v1::CallRequest& message, MethodCall& call);
void Encode(const VariantArray& results, v1::CallReply& message);
bool Decode(v1::CallReply& message, VariantArray& results);

}  // namespace orvane::wire
