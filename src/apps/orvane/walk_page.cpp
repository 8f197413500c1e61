#include "apps/orvane/walk_page.h"

#include <cstddef>

namespace orvane::apps {
namespace {

constexpr std::string_view kHead =
    "<!DOCTYPE html>\n<html lang=\"bg\"><head><meta charset=\"utf-8\"><title>Orvane</title><style>"
    "body{font:15px/1.5 'Noto Sans',sans-serif;max-width:1000px;margin:2em auto;padding:0 1em;"
    "color:#1a202c;background:#eef1f6}img{width:100%;border:1px solid #c3cbd7;margin:.5em 0}"
    "details{color:#465063}pre{background:#fff;padding:.7em;overflow:auto}"
    ".problem{color:#b3261e;font-weight:bold}</style></head><body>\n";

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else
      escaped += c;
  }
  return escaped;
}

/// The story as it grows: text, steps that are still to be folded away, pictures.
class Story {
 public:
  explicit Story(const std::vector<std::string>& pictures) : pictures_(pictures) {}

  void Take(std::string_view line) {
    if (line.starts_with('#')) return Say(line.substr(1));
    EndText();
    if (line.empty()) return;
    steps_ += std::string(line) + '\n';
    if (line.starts_with("picture ")) Show();
  }

  std::string End(std::string_view problem) {
    EndText();
    FoldSteps();
    if (!problem.empty()) page_ += "<p class=\"problem\">" + Escaped(problem) + "</p>\n";
    return page_ + "</body></html>\n";
  }

 private:
  void Say(std::string_view text) {
    FoldSteps();
    text_ += std::string(text);
  }
  void EndText() {
    if (!text_.empty()) page_ += "<p>" + Escaped(text_) + "</p>\n";
    text_.clear();
  }
  void FoldSteps() {
    if (!steps_.empty())
      page_ += "<details><summary>стъпки</summary><pre>" + Escaped(steps_) + "</pre></details>\n";
    steps_.clear();
  }
  void Show() {
    if (shown_ >= pictures_.size()) return;
    FoldSteps();
    page_ += "<img alt=\"\" src=\"" + Escaped(pictures_[shown_++]) + "\">\n";
  }

  const std::vector<std::string>& pictures_;
  std::size_t shown_ = 0;
  std::string page_{kHead};
  std::string text_;
  std::string steps_;
};

}  // namespace

std::string WalkPage(std::string_view walk, const std::vector<std::string>& pictures,
                     std::string_view problem) {
  Story story(pictures);
  while (!walk.empty()) {
    const std::size_t end = walk.find('\n');
    story.Take(walk.substr(0, end));
    walk = end == std::string_view::npos ? std::string_view() : walk.substr(end + 1);
  }
  return story.End(problem);
}

}  // namespace orvane::apps
