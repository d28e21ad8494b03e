#pragma once

#include <string>
#include <vector>

namespace zrt::play {

/// One action of a play, with the lines that follow it after a tab.
struct Line {
  int number = 0;                  ///< from 1, in its file
  std::string text;                ///< as written, for messages
  std::vector<std::string> words;  ///< the first one is the action's name
  std::vector<bool> quoted;        ///< which words stood in double quotes
  std::vector<std::string> block;  ///< following lines that begin with a tab, without it
};

/// Splits the text of a play. A line of several actions gives one for each; empty lines and lines that begin with # are
/// left out; a text with blanks stands in double quotes, with \" \n \r and \\ inside. Throws Error with the line's
/// number for a quote that isn't closed, another escape, or a block without an action.
std::vector<Line> ReadScript(const std::string& text);

}  // namespace zrt::play
