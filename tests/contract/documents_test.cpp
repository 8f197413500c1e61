// What the documents' providers must have in common, and the page of their differences.

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "contract/document_shapes.h"
#include "contract/golden_page.h"

namespace orvane {
namespace {

constexpr const char* kRolesCome[] = {"none", "rows of roles", "elements of the answer"};
constexpr const char* kIdentifierComes[] = {"owner data", "in the applied row",
                                            "the screen numbers"};
constexpr const char* kRefusal[] = {"host decides", "aborts and tells"};

std::string Applied(int maxErrors, bool repeats) {
  return std::to_string(maxErrors) + (repeats ? ", repeated" : ", once");
}

std::string Page() {
  std::ostringstream page;
  page << "# Documents and how they differ\n\nPrinted from the table that the pieces of document "
          "screens take their parameters from.\n\n| document | load | positions asked, move at, "
          "language at | packets, from | user's part | head applied | rows applied | owner data | "
          "new "
          "identifier | refused head | decision stamp "
          "|\n|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (const DocumentShape& shape : DocumentShapes()) {
    const std::string language =
        shape.languagePosition < 0 ? "none" : std::to_string(shape.languagePosition);
    page << "| " << shape.name << " | " << shape.serverClass << '.' << shape.loadMethod << " | "
         << int{shape.askSize} << ", " << int{shape.navPosition} << ", " << language << " | "
         << int{shape.packets} << ", " << int{shape.firstPacket} << " | "
         << kRolesCome[static_cast<int>(shape.roles)] << " | "
         << Applied(shape.headMaxErrors, shape.headRepeats) << " | "
         << Applied(shape.rowsMaxErrors, shape.rowsRepeat) << " | "
         << (shape.headOwnerData.empty() ? "none" : shape.headOwnerData) << " | "
         << kIdentifierComes[static_cast<int>(shape.identifier)] << " | "
         << kRefusal[static_cast<int>(shape.refusal)] << " | "
         << (shape.decisionStamp.empty() ? "none" : shape.decisionStamp) << " |\n";
  }
  return page.str();
}

TEST(Documents, ThePageIsWhatTheTableSays) {
  ExpectPage("documents.md", Page());
}

TEST(Documents, TheLoadAsksWithinItsPositions) {
  for (const DocumentShape& shape : DocumentShapes()) {
    EXPECT_LT(shape.navPosition, shape.askSize) << shape.serverClass;
    EXPECT_LT(shape.languagePosition, shape.askSize) << shape.serverClass;
    EXPECT_NE(shape.languagePosition, shape.navPosition) << shape.serverClass;
    EXPECT_GE(shape.packets, 1) << shape.serverClass;
  }
}

TEST(Documents, ProvidersNameTheirFieldsOnceAndHaveAKeyThatIsSent) {
  std::set<std::string_view> tables;
  for (const ProviderDef& provider : DocumentProviders()) {
    EXPECT_TRUE(tables.insert(provider.table).second) << provider.table << " has two writers";
    std::set<std::string_view> names;
    bool hasKey = false;
    for (const FieldDef& field : provider.fields) {
      const std::string place = std::string(provider.name) + "." + std::string(field.name);
      EXPECT_TRUE(names.insert(field.name).second) << place << " stands twice";
      EXPECT_FALSE(field.Is(Key) && field.Is(Joined)) << place << " is a key that is not sent";
      EXPECT_EQ(field.kind == ValueKind::String, field.size > 0) << place << " and its size";
      EXPECT_FALSE(field.Is(Required) && !field.Is(Joined) && field.label.empty() &&
                   field.kind == ValueKind::Date)
          << place << " cannot be named in a message";
      hasKey = hasKey || field.Is(Key);
    }
    EXPECT_TRUE(hasKey) << provider.name;
  }
}

TEST(Documents, ApprovalRowsCarryTheirSendingAndStamp) {
  int approved = 0;
  for (const DocumentShape& shape : DocumentShapes())
    approved += !shape.decisionStamp.empty();
  int found = 0;
  for (const ProviderDef& provider : DocumentProviders()) {
    bool level = false;
    bool sending = false;
    bool stamp = false;
    for (const FieldDef& field : provider.fields) {
      level = level || field.name == "ConfirmationLevel";
      sending = sending || field.name == "SendingNumber";
      stamp = stamp ||
              ((field.name == "ConfermedOn" || field.name == "ConfirmedOn") && field.Is(Stamped));
    }
    if (!level) continue;
    ++found;
    EXPECT_TRUE(sending) << provider.name;
    EXPECT_TRUE(stamp) << provider.name;
  }
  EXPECT_EQ(found, approved);
}

}  // namespace
}  // namespace orvane
