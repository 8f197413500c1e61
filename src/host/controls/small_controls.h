#pragma once

// The small controls of document screens: the key edit with its navigation bar, pages, and labels.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/controls/cell_editor.h"
#include "host/controls/control.h"

namespace orvane::host {

/// An edit that holds a document's key (identifier, version). Enter ends the in-place edit.
class TKeyEdit : public Control {
 public:
  TKeyEdit(TVosBaseForm& form, std::string_view name, std::string_view caption);

  std::string caption;
  std::string mask;  ///< picture of what may be typed; empty: anything
  int width = 11;    ///< characters
  bool readOnly = false;
  /// The in-place edit ends with a text; throws Abort to keep it open. The edit shows the text from
  /// then on, unless the handler sets another.
  std::function<void(const std::string& text)> OnEditClosed;

  const std::string& Text() const { return text_; }
  /// The text as the user sees it: what is being typed, else the text.
  const std::string& TypedText() const { return editor_.IsOpen() ? editor_.Text() : text_; }
  /// Shows a text; an in-place edit ends without OnEditClosed.
  void SetText(std::string_view text);

  bool HandleKey(KeyStroke key) override;
  bool HandleText(std::string_view text) override;
  CellEditor* Editor() override { return editor_.IsOpen() ? &editor_ : nullptr; }
  bool EditorTextTyped(std::string_view text) override { return editor_.SetText(text); }
  void CommitEditor() override;
  void CancelEditor() override { editor_.Close(); }
  void BeforeLeave() override { CommitEditor(); }
  std::string PlaceLabel() const override { return caption; }

 protected:
  std::size_t LookHash() const override;

 private:
  bool Open();

  std::string text_;
  CellEditor editor_;
  bool committing_ = false;
};

struct TabPage {
  std::string name = {};
  std::string caption = {};
  Control* content = nullptr;
  bool visible = true;
};

/// Pages of which one is shown.
class TPageControl : public Control {
 public:
  TPageControl(TVosBaseForm& form, std::string_view name);

  std::vector<TabPage> pages;
  int active = 0;
  TabPage* FindPage(std::string_view name);
  /// Shows the page and focuses its content; nothing happens to a page that is hidden or not there.
  /// When the old control does not let the focus go, the page stays as well.
  void ShowPage(std::string_view name);
  bool CanFocus() const override { return false; }

 protected:
  std::size_t LookHash() const override;
};

/// A text the screen sets: a caption, or the status of a document in words.
class TLabel : public Control {
 public:
  TLabel(TVosBaseForm& form, std::string_view name);
  std::string text;
  bool chip = false;  ///< drawn as the status chip
  bool CanFocus() const override { return false; }

 protected:
  std::size_t LookHash() const override;
};

}  // namespace orvane::host
