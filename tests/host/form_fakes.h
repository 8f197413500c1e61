#pragma once

// A server and a toolkit for the tests of forms: the server answers from what a test put in and
// counts; the toolkit keeps what was shown and plays the test's part inside dialogs.

#include <cassert>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "host/application.h"
#include "host/form.h"
#include "host/report_snapshot.h"
#include "host/toolkit.h"
#include "packet/application_server.h"

namespace orvane::host::fakes {

class FakeServer final : public IApplicationServer {
 public:
  SessionInfo session;
  std::string password = "вярна";
  Greeting greeting;
  std::deque<Failure> greetFailures;  ///< of the first greetings
  bool reachable = true;
  std::vector<LoginRequest> logins;
  std::vector<FetchRequest> fetches;
  std::vector<MethodCall> methodCalls;
  std::deque<Answer<DataPacket>> packets;  ///< one per fetch request, in order
  std::function<Answer<VariantArray>(const MethodCall&)> onCall;
  int logOuts = 0;

  Answer<Greeting> Greet() override {
    if (greetFailures.empty()) return greeting;
    const Failure failure = greetFailures.front();
    greetFailures.pop_front();
    return failure;
  }
  bool IsReachable() const override { return reachable; }

  Answer<SessionInfo> LogIn(const LoginRequest& request) override {
    logins.push_back(request);
    if (request.password != password) return Refused("Грешен потребител или парола.");
    SessionInfo info = session;
    info.login = request.login;
    info.ticket = "билет " + std::to_string(logins.size());
    return info;
  }

  Answer<Done> LogOut(const Caller&) override {
    ++logOuts;
    return Done();
  }

  Answer<std::vector<DataPacket>> Fetch(const Caller&,
                                        const std::vector<FetchRequest>& requests) override {
    std::vector<DataPacket> answers;
    for (const FetchRequest& request : requests) {
      fetches.push_back(request);
      if (packets.empty()) return Failure{FailureKind::BadRequest, "Нищо не е подготвено."};
      const Answer<DataPacket> packet = packets.front();
      packets.pop_front();
      if (!packet) return packet.GetFailure();
      answers.push_back(*packet);
    }
    return answers;
  }

  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest&) override {
    return Failure{FailureKind::BadRequest, "Тук не се записва."};
  }

  Answer<VariantArray> Call(const Caller&, const MethodCall& call) override {
    methodCalls.push_back(call);
    if (onCall) return onCall(call);
    return VariantArray();
  }
};

class FakeToolkit final : public IToolkit {
 public:
  std::vector<MessageDialog> messages;
  std::deque<int> answers;  ///< to questions, in order; No when there is none
  /// What a user does in the modal forms, one entry a form; a form left open is closed.
  std::deque<std::function<void(TVosBaseForm&)>> modals;
  std::vector<std::string> shown;
  std::vector<TakenReport> reports;
  int changes = 0;
  std::function<void()> whileAsking;
  std::function<void(QuestionLine&)> whileTyping;

  void Show(TVosBaseForm& form) override {
    shown.push_back(form.ClassName());
    form.BeShown();
  }
  void ShowModal(TVosBaseForm& form) override {
    form.BeShown();
    if (!modals.empty()) {
      const auto play = modals.front();
      modals.pop_front();
      play(form);
    }
    if (!form.IsClosed()) form.Dispatch(CloseWanted());
  }
  void FormChanged(TVosBaseForm&) override { ++changes; }
  void FormGone(TVosBaseForm&) override {}
  int ShowMessage(TVosBaseForm*, const MessageDialog& dialog) override {
    messages.push_back(dialog);
    if (whileAsking) whileAsking();
    if (!dialog.yesNo) return kAnswerOk;
    if (answers.empty()) return kAnswerNo;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
  int AskLine(TVosBaseForm* owner, const MessageDialog& question, QuestionLine& line) override {
    const int answer = ShowMessage(owner, question);
    if (whileTyping) whileTyping(line);
    return answer;
  }
  void PreviewReport(TVosBaseForm&, ReportDocument report) override {
    reports.push_back(*ReportSnapshot::Take(std::move(report)));
  }
  void SetClipboard(const std::string&) override {}

  /// Text of the only message; what is wrong otherwise. Forgets the messages.
  std::string TakeMessage() {
    const std::string text = messages.size() == 1 ? messages.front().text
                                                  : std::to_string(messages.size()) + " messages";
    messages.clear();
    return text;
  }
};

/// A logged-in application over both.
struct Host {
  FakeServer server;
  FakeToolkit toolkit;
  SetClock clock{Stamp{1'772'694'000'000'000}};  // 05.03.2026 07:00 UTC
  VosApplication app{server, toolkit, clock};

  Host() {
    server.session.languageNames = {"Български", "English"};
    server.session.userName = "Мария Иванова";
    server.session.companyName = "Демонстрационно дружество";
    server.session.sessionName = "s1";
    server.session.points = {{1, 15}, {2, 1}};
  }
  void LogIn(std::string_view login = "ivanova") {
    const Answer<Done> answer = app.LogIn(login, server.password);
    assert(answer.Ok());
  }
  FormIdentity Identity(TPointAccess access = {paOpen, paEdit, paInsert, paDelete}) {
    return {.app = &app, .moduleNo = 11, .pointNo = 1, .access = access};
  }
};

inline void Press(TVosBaseForm& form, KeyStroke key) {
  form.Dispatch(KeyPressed{key});
}
inline void Type(TVosBaseForm& form, std::string_view text) {
  form.Dispatch(TextTyped{std::string(text)});
}

}  // namespace orvane::host::fakes
