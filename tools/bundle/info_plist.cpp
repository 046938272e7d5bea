#include "tools/bundle/info_plist.h"

#include "tools/system/texts.h"

namespace tools {

bool isFixedEntry(const std::string& key) {
  return key == "CFBundleExecutable" || key == "CFBundleIdentifier" || key == "CFBundlePackageType";
}

static void setText(PlistTable* table, const std::string& key, const std::string& text) {
  if (!text.empty()) {
    setEntry(table, key, plistString(text));
  }
}

static PlistValue urlTypesOf(const BundleInfo& info) {
  PlistTable type;
  setText(&type, "CFBundleTypeRole", "Viewer");
  setText(&type, "CFBundleURLName", info.appIdentifier);
  setEntry(&type, "CFBundleURLSchemes", plistStrings(info.urlSchemes));
  return {PlistList{{type}}};
}

static PlistValue documentTypesOf(const BundleInfo& info) {
  PlistList list;
  for (const DocumentType& document : info.documentTypes) {
    PlistTable type;
    setText(&type, "CFBundleTypeIconFile", document.icon);
    setText(&type, "CFBundleTypeName", document.name);
    setText(&type, "CFBundleTypeRole", document.role);
    setText(&type, "LSHandlerRank", "Default");
    if (!document.extensions.empty()) {
      setEntry(&type, "CFBundleTypeExtensions", plistStrings(document.extensions));
    }
    if (!document.contentTypes.empty()) {
      setEntry(&type, "LSItemContentTypes", plistStrings(document.contentTypes));
    }
    list.push_back({type});
  }
  return {list};
}

// Whether the system itself knows the content type.
static bool isSystemType(const std::string& type) {
  return startsWith(type, "public.") || startsWith(type, "com.apple.");
}

// Where there are content types, the system looks no more at the extensions beside them: they must
// be those of a declared type.
static PlistTable declarationOf(const DocumentType& document) {
  PlistTable tags;
  setEntry(&tags, "public.filename-extension", plistStrings(document.extensions));
  PlistTable declaration;
  setEntry(&declaration, "UTTypeConformsTo", plistStrings({"public.data"}));
  setText(&declaration, "UTTypeDescription", document.name);
  setText(&declaration, "UTTypeIconFile", document.icon);
  setText(&declaration, "UTTypeIdentifier", document.contentTypes[0]);
  setEntry(&declaration, "UTTypeTagSpecification", {tags});
  return declaration;
}

// Exports the types that are the application's own by their names, and imports the others.
static void setTypeDeclarations(const BundleInfo& info, PlistTable* table) {
  PlistList exported;
  PlistList imported;
  for (const DocumentType& document : info.documentTypes) {
    if (document.extensions.empty() || document.contentTypes.empty() ||
        isSystemType(document.contentTypes[0])) {
      continue;
    }
    const bool isOwn = startsWith(document.contentTypes[0], info.appIdentifier + ".");
    (isOwn ? exported : imported).push_back({declarationOf(document)});
  }
  if (!exported.empty()) {
    setEntry(table, "UTExportedTypeDeclarations", {exported});
  }
  if (!imported.empty()) {
    setEntry(table, "UTImportedTypeDeclarations", {imported});
  }
}

// The system knows no exception for a single address, nor for a name without a domain: these are
// the local network.
static bool isLocal(const std::string& host) {
  const bool isAddress =
      host[0] == '[' || host.find_first_not_of("0123456789.") == std::string::npos;
  return isAddress || host.find('.') == std::string::npos || endsWith(host, ".local");
}

static PlistValue transportSecurityOf(const std::string& host) {
  PlistTable table;
  if (isLocal(host)) {
    setEntry(&table, "NSAllowsLocalNetworking", plistBoolean(true));
    return {table};
  }
  PlistTable exception;
  setEntry(&exception, "NSExceptionAllowsInsecureHTTPLoads", plistBoolean(true));
  PlistTable domains;
  setEntry(&domains, host, {exception});
  setEntry(&table, "NSExceptionDomains", {domains});
  return {table};
}

static PlistTable identityOf(const BundleInfo& info) {
  PlistTable table;
  setText(&table, "CFBundleDevelopmentRegion", "en");
  setText(&table, "CFBundleDisplayName", info.name);
  setText(&table, "CFBundleExecutable", info.executableName);
  setText(&table, "CFBundleIconFile", info.icon);
  setText(&table, "CFBundleIdentifier", info.identifier);
  setText(&table, "CFBundleInfoDictionaryVersion", "6.0");
  setText(&table, "CFBundleName", info.name);
  setText(&table, "CFBundlePackageType", "APPL");
  setText(&table, "CFBundleShortVersionString",
          info.displayVersion.empty() ? info.version : info.displayVersion);
  setText(&table, "CFBundleVersion", info.version);
  setText(&table, "LSApplicationCategoryType", info.category);
  setText(&table, "LSMinimumSystemVersion", info.minimumSystem);
  setEntry(&table, "NSHighResolutionCapable", plistBoolean(true));
  setText(&table, "NSHumanReadableCopyright", info.copyright);
  setText(&table, "NSPrincipalClass", "NSApplication");
  return table;
}

std::string encodeInfoPlist(const BundleInfo& info) {
  PlistTable table = identityOf(info);
  if (!info.urlSchemes.empty()) {
    setEntry(&table, "CFBundleURLTypes", urlTypesOf(info));
  }
  if (!info.documentTypes.empty()) {
    setEntry(&table, "CFBundleDocumentTypes", documentTypesOf(info));
    setTypeDeclarations(info, &table);
  }
  if (!info.plainHttpHost.empty()) {
    setEntry(&table, "NSAppTransportSecurity", transportSecurityOf(info.plainHttpHost));
  }
  for (const PlistEntry& entry : info.more) {
    if (!isFixedEntry(entry.key)) {
      setEntry(&table, entry.key, entry.value);
    }
  }
  return encodePlist(table);
}

}  // namespace tools
