#pragma once

#include <zip.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

// The zipped XML that .xlsx and .ods files are made of.

namespace zrt {

/// An archive in memory. Its bytes must outlive it.
class ZipFile {
 public:
  /// Throws BadSpreadsheet: kDamaged when the bytes are no whole archive.
  explicit ZipFile(std::string_view bytes);

  bool Has(const std::string& name) const;

  /// Handle of a member for zip_fread. Throws BadSpreadsheet: kDamaged when missing, kEncrypted.
  std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> OpenMember(const std::string& name) const;

 private:
  std::unique_ptr<zip_t, void (*)(zip_t*)> zip_;
};

/// Attributes of an element, valid while its StartElement runs.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char* const* pairs) : pairs_(pairs) {}

  /// The value of the attribute of that name, prefix and all; "" without it.
  std::string_view operator[](std::string_view name) const;

  /// The value of the first attribute with that name after its prefix, whatever the prefix; "" without it.
  std::string_view WithAnyPrefix(std::string_view name) const;

 private:
  const char* const* pairs_;
};

/// The name without its prefix: "x:row" is "row".
std::string_view WithoutPrefix(std::string_view name);

/// Hands the elements of an XML member one after another to the class derived from it. Neither the depth nor the size
/// of the document costs memory.
class XmlReader {
 public:
  virtual ~XmlReader() = default;

  /// Reads the member to its end. Throws BadSpreadsheet: kDamaged when it is missing, its checksum is wrong or it is
  /// no well-formed XML, kEncrypted, kTooLarge; and whatever the functions below throw.
  void Read(const ZipFile& zip, const std::string& name);

 protected:
  virtual void StartElement(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void EndElement(std::string_view name) = 0;
  /// A piece of text; one text may come in several pieces.
  virtual void Text(std::string_view text) = 0;

 private:
  struct Callbacks;

  std::exception_ptr failure_;
};

}  // namespace zrt
