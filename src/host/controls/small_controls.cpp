#include "host/controls/small_controls.h"

#include <algorithm>

#include "data/abort.h"
#include "host/form.h"
#include "packet/variant.h"

namespace orvane::host {

// --- the key edit
// ---------------------------------------------------------------------------------

TKeyEdit::TKeyEdit(TVosBaseForm& form, std::string_view name, std::string_view shown)
    : Control(form, name, ControlKind::KeyEdit), caption(shown) {}

void TKeyEdit::SetText(std::string_view text) {
  text_ = text;
  editor_.Close();
}

bool TKeyEdit::Open() {
  if (readOnly) return false;
  if (!editor_.IsOpen()) {
    editor_.OpenText(text_, PictureMask(mask));
    editor_.label = caption;
  }
  return true;
}

bool TKeyEdit::HandleText(std::string_view text) {
  if (Open()) editor_.Type(text);
  return true;
}

bool TKeyEdit::HandleKey(KeyStroke key) {
  const bool wasOpen = editor_.IsOpen();
  if (key == KeyStroke(KeyCode::Enter) && wasOpen) {
    CommitEditor();
    return true;
  }
  if (key == KeyStroke(KeyCode::Escape) && wasOpen) {
    editor_.Close();
    return true;
  }
  if (key == KeyStroke(KeyCode::F2) && Open()) {
    editor_.KeepText();
    return true;
  }
  const bool erases = key == KeyStroke(KeyCode::Backspace) || key == KeyStroke(KeyCode::Delete);
  if (!erases || (wasOpen && key == KeyStroke(KeyCode::Delete))) return false;
  if (wasOpen)
    editor_.Backspace();
  else if (Open())
    editor_.SetText({});
  return true;
}

void TKeyEdit::CommitEditor() {
  if (committing_ || !editor_.IsOpen()) return;
  if (!editor_.IsChanged()) return editor_.Close();
  const std::string typed = editor_.Text();
  committing_ = true;
  const std::string before = text_;
  try {
    text_ = typed;
    if (OnEditClosed) OnEditClosed(typed);
  } catch (...) {
    // The in-place edit goes on with what was typed, whatever the handler loaded meanwhile.
    committing_ = false;
    if (text_ == typed) text_ = before;
    if (!editor_.IsOpen()) {
      editor_.OpenText(text_, PictureMask(mask));
      editor_.label = caption;
    }
    editor_.SetText(typed);
    throw;
  }
  committing_ = false;
  editor_.Close();
}

std::size_t TKeyEdit::LookHash() const {
  LookHasher hasher;
  hasher.Add(Control::LookHash()).Add(caption).Add(text_).Add(readOnly ? 1U : 0U);
  return hasher.Add(editor_.IsOpen() ? 1U : 0U).Add(editor_.Text()).Value();
}

// --- pages
// ----------------------------------------------------------------------------------------

TPageControl::TPageControl(TVosBaseForm& form, std::string_view name)
    : Control(form, name, ControlKind::PageControl) {}

TabPage* TPageControl::FindPage(std::string_view name) {
  const auto found =
      std::ranges::find_if(pages, [&](const TabPage& page) { return SameName(page.name, name); });
  return found == pages.end() ? nullptr : &*found;
}

void TPageControl::ShowPage(std::string_view name) {
  const TabPage* page = FindPage(name);
  if (page == nullptr || !page->visible) return;
  const int before = active;
  active = static_cast<int>(page - pages.data());
  Control* content = page->content;
  if (content == nullptr) return;
  try {
    Form().FocusControl(content);
  } catch (...) {
    if (Form().ActiveControl() != content) active = before;
    throw;
  }
}

std::size_t TPageControl::LookHash() const {
  LookHasher hasher;
  hasher.Add(Control::LookHash()).Add(static_cast<std::size_t>(active));
  for (const TabPage& page : pages)
    hasher.Add(page.caption).Add(page.visible ? 1U : 0U);
  return hasher.Value();
}

// --- labels
// ---------------------------------------------------------------------------------------

TLabel::TLabel(TVosBaseForm& form, std::string_view name)
    : Control(form, name, ControlKind::Label) {}

std::size_t TLabel::LookHash() const {
  return LookHasher().Add(Control::LookHash()).Add(text).Add(chip ? 1U : 0U).Value();
}

}  // namespace orvane::host
