#include "platform/data_link.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

#include "core/errors.h"
#include "core/text.h"
#include "platform/text_file.h"

namespace zrt {

namespace {

struct Field {
  std::string name;  ///< lower case
  std::string value;
};
using Fields = std::vector<Field>;

/// The fields that are taken from a link, each under the driver's own name, which comes first, and under those that
/// mean the same. All others stay out: drivers have options that load code or let one call carry several statements,
/// and a link is a file that anyone may have sent.
constexpr std::array<std::array<std::string_view, 9>, 6> kTaken = {{
    {"server", "data source", "address", "addr", "network address", "host", "host name", "hostname", "server name"},
    {"port", "port number"},
    {"database", "initial catalog", "db", "database name", "schema"},
    {"uid", "user id", "user", "username", "user name"},
    {"pwd", "password"},
    {"dsn", "data source name"},
}};

/// A link has a few lines; anything larger is another file.
constexpr std::size_t kMaxLinkFile = 64U << 10;

std::string Decoded(const std::string& bytes) {
  const std::string_view all = bytes;
  if (all.starts_with("\xFF\xFE")) return FromUtf16(all.substr(2), false);
  if (all.starts_with("\xFE\xFF")) return FromUtf16(all.substr(2), true);
  if (all.starts_with("\xEF\xBB\xBF")) return std::string(all.substr(3));
  return IsUtf8(all) ? bytes : FromWindows1251(all);
}

/// The text of the connection: without section names, comments and line ends.
std::string WithoutSections(const std::string& text) {
  std::istringstream lines(text);
  std::string joined;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line.front() == '[' || line.front() == ';') continue;
    joined += line;
  }
  return joined;
}

/// The driver's name of a field; "" for one that isn't taken.
std::string_view OwnName(std::string_view name) {
  for (const auto& names : kTaken) {
    if (!name.empty() && std::find(names.begin(), names.end(), name) != names.end()) return names.front();
  }
  return {};
}

/// "name=value;name=value". A value in quotes or braces may hold anything; its own closing sign stands doubled in it.
Fields Split(const std::string& text) {
  Fields fields;
  std::size_t at = 0;
  while ((at = text.find_first_not_of("; ", at)) != std::string::npos) {
    const std::size_t equals = text.find('=', at);
    if (equals == std::string::npos) break;
    Field field{ToLower(Trim(std::string_view(text).substr(at, equals - at))), ""};
    at = text.find_first_not_of(' ', equals + 1);
    if (at == std::string::npos) at = text.size();
    const char open = at < text.size() ? text[at] : ';';
    if (open == '"' || open == '\'' || open == '{') {
      const char close = open == '{' ? '}' : open;
      for (++at; at < text.size(); ++at) {
        if (text[at] != close) {
          field.value += text[at];
        } else if (at + 1 < text.size() && text[at + 1] == close) {
          field.value += text[at++];
        } else {
          break;
        }
      }
      at = text.find(';', at);
    } else {
      const std::size_t end = text.find(';', at);
      field.value = Trim(std::string_view(text).substr(at, end == std::string::npos ? end : end - at));
      at = end;
    }
    fields.push_back(std::move(field));
    if (at == std::string::npos) break;
  }
  return fields;
}

const Field* Find(const Fields& fields, std::string_view name) {
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; });
  return found == fields.end() ? nullptr : &*found;
}

/// Adds those fields that are not there yet, under the driver's names.
void Take(Fields& taken, const Fields& fields) {
  for (const Field& field : fields) {
    const std::string_view name = OwnName(field.name);
    if (!name.empty() && !field.value.empty() && Find(taken, name) == nullptr)
      taken.push_back({std::string(name), field.value});
  }
}

std::string Quoted(const std::string& value) {
  if (value.find_first_of(";{}[]()=,?*!@") == std::string::npos) return value;
  std::string quoted = "{";
  for (const char sign : value) quoted += sign == '}' ? std::string("}}") : std::string(1, sign);
  return quoted + "}";
}

}  // namespace

std::string DataLinkConnection(const DriveMap& drives, const std::string& connection_text, std::string_view driver,
                               const DataSourceTest& is_source) {
  const Fields outer = Split(connection_text);
  const Field* named = Find(outer, "file name");
  if (named == nullptr) return connection_text;
  const std::string path = named->value;

  const std::string bytes = ReadSmallFile(drives, path, kMaxLinkFile);
  const Fields linked = Split(WithoutSections(Decoded(bytes)));
  Fields fields;
  if (const Field* extended = Find(linked, "extended properties")) Take(fields, Split(extended->value));
  Take(fields, linked);

  const Field* server = Find(fields, "server");
  const Field* source = Find(fields, "dsn");
  // A link to a data source may name it within and without, and there under the name of a server.
  if (server != nullptr && (is_source(server->value) || (source != nullptr && server->value == source->value))) {
    if (source == nullptr) source = server;
    server = nullptr;
  }
  std::string text;
  if (server != nullptr) {
    text = "driver={" + std::string(driver) + "}; server=" + Quoted(server->value);
  } else if (source != nullptr) {
    text = "dsn=" + Quoted(source->value);
  } else {
    throw FileError(path, "names no server");
  }
  for (const Field& field : fields) {
    if (field.name == "server" || field.name == "dsn") continue;
    text += "; " + field.name + "=" + Quoted(field.value);
  }
  return text + "; charset=latin1";
}

}  // namespace zrt
