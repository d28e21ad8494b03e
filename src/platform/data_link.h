#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/drive_map.h"

namespace zrt {

/// Answers whether the machine's own settings know a data source of that name.
using DataSourceTest = std::function<bool(const std::string& name)>;

/// The connection text of the driver for a connection text of the program. One that names a data link file, "File
/// name=C:\reserve.udl;", is looked up there; any other is returned as it is.
///
/// The file is read as Windows writes it (UTF-16 with a mark, UTF-8, windows-1251): sections and comments, then
/// "Provider=...;Data Source=...;Initial Catalog=...;User ID=...;Password=..." or the driver's text under "Extended
/// Properties"; or it holds the driver's text alone. Inner fields go before outer ones. The driver is always `driver`:
/// the file names that of the machine that wrote it. A field that names a data source of this machine (`is_source`)
/// stands for server and driver. Server, port, database, account, password and data source are taken; whatever else a
/// file asks for is passed over: options of the driver, and the character set, because texts are stored as the
/// terminals' bytes.
///
/// Throws FileError when the file is missing, can't be read, is larger than 64 KB, or names neither a server nor a data
/// source.
std::string DataLinkConnection(const DriveMap& drives, const std::string& connection_text, std::string_view driver,
                               const DataSourceTest& is_source);

}  // namespace zrt
