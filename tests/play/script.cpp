#include "play/script.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "core/errors.h"

namespace zrt::play {

namespace {

std::string QuotedWord(const std::string& text, std::size_t& at) {
  std::string word;
  for (++at; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] != '\\') {
      word += text[at];
      continue;
    }
    const char escaped = ++at < text.size() ? text[at] : '\0';
    if (escaped == 'n' || escaped == 'r') {
      word += escaped == 'n' ? '\n' : '\r';
    } else if (escaped == '"' || escaped == '\\') {
      word += escaped;
    } else {
      throw Error("only \\\", \\n, \\r and \\\\ stand in a text");
    }
  }
  if (at >= text.size()) throw Error("a text isn't closed");
  ++at;
  return word;
}

void SplitWords(Line& line) {
  const std::string& text = line.text;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == ' ') {
      ++at;
    } else if (text[at] == '"') {
      line.words.push_back(QuotedWord(text, at));
      line.quoted.push_back(true);
    } else {
      const std::size_t end = std::min(text.find(' ', at), text.size());
      line.words.push_back(text.substr(at, end - at));
      line.quoted.push_back(false);
      at = end;
    }
  }
}

/// Adds a line of several actions as these, one after another: what opens a window leaves the rest to that.
void AddActions(std::vector<Line>& script, Line line) {
  /// Words of one action, and how many of them all actions of the line share.
  static const std::map<std::string, std::pair<int, int>> kSeveral = {
      {"error", {1, 0}}, {"click", {2, 1}}, {"tab", {2, 1}}, {"sql", {2, 1}}, {"set", {3, 1}}, {"key", {3, 2}}};
  script.push_back(line);
  if (line.words.front() == "rows" && line.words.size() > 2) {
    script.back().block.assign(line.words.begin() + 2, line.words.end());
    script.back().words.resize(2);
  }
  const auto several = kSeveral.find(line.words.front());
  if (several == kSeveral.end() || std::ssize(line.words) <= several->second.first) return;
  const auto [own, shared] = several->second;
  script.back().words.resize(static_cast<std::size_t>(own));
  line.words.erase(line.words.begin() + shared, line.words.begin() + own);
  line.quoted.erase(line.quoted.begin() + shared, line.quoted.begin() + own);
  AddActions(script, std::move(line));
}

}  // namespace

std::vector<Line> ReadScript(const std::string& text) {
  std::vector<Line> script;
  std::istringstream stream(text);
  int number = 0;
  for (std::string raw; std::getline(stream, raw);) {
    ++number;
    if (!raw.empty() && raw.back() == '\r') raw.pop_back();
    try {
      if (!raw.empty() && raw.front() == '\t') {
        if (script.empty()) throw Error("nothing stands before this block");
        script.back().block.push_back(raw.substr(1));
        continue;
      }
      Line line{number, raw, {}, {}, {}};
      if (!raw.empty() && raw.front() != '#') SplitWords(line);
      if (!line.words.empty()) AddActions(script, std::move(line));
    } catch (const Error& error) {
      throw Error("line " + std::to_string(number) + ": " + error.what());
    }
  }
  return script;
}

}  // namespace zrt::play
