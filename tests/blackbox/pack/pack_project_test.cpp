#include <gtest/gtest.h>

#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"

// What 'quorvane-pack build' says of project files that are wrong. Each message stands here once.

namespace {

struct WrongProject {
  const char* name;
  const char* from;
  const char* to;
  const char* message;
};

void PrintTo(const WrongProject& project, std::ostream* out) {
  *out << project.name;
}

// What is taken out for the packager's own updater.
const char kOwnUpdater[] = "[updater]\nfolder = \"updater\"\nversion = \"5\"\n";

const WrongProject kWrongProjects[] = {
    {"NoToml", "[application]", "[application",
     "quorvane.toml:1: Error while parsing table header: expected ']', saw '\\n'"},
    {"UnknownSection", "[updater]", "[upgrades]",
     "quorvane.toml:9: there is no section [upgrades]; known are application, info_plist, "
     "installer, runtime, signing, updater, updates"},
    {"NoSection", "[runtime]", "[[runtime]]",
     "quorvane.toml:13: runtime is not a section; write it as [runtime] with its keys below"},
    {"UnknownKey", "version = \"5\"", "verson = \"5\"",
     "quorvane.toml:11: [updater] has no key 'verson'; known are folder, version"},
    {"OtherType", "name = \"Small App\"", "name = 7",
     "quorvane.toml:2: 'name' in [application] must be a string; this is integer"},
    {"OtherTypeThanAPath", "folder = \"app\"", "folder = 7",
     "quorvane.toml:5: 'folder' in [application] must be a path as a string; this is integer"},
    {"OtherTypeThanAVersion", "version = \"3\"", "version = 1.5",
     "quorvane.toml:3: 'version' in [application] must be a whole number; this is floating-point"},
    {"OtherTypeThanANumber", "[installer]", "[installer]\nminimum_splash_ms = \"long\"",
     "quorvane.toml:17: 'minimum_splash_ms' in [installer] must be a whole number; this is string"},
    {"OtherTypeThanAFlag", "[installer]", "[installer]\nrequire_signature = 1",
     "quorvane.toml:17: 'require_signature' in [installer] must be true or false; this is integer"},
    {"OtherTypeThanAList", "folder = \"app\"", "folder = \"app\"\narguments = \"-x\"",
     "quorvane.toml:6: 'arguments' in [application] must be a list of strings; this is string"},
    {"ListOfNumbers", "folder = \"app\"", "folder = \"app\"\narguments = [1]",
     "quorvane.toml:6: 'arguments' in [application] must be a list of strings; this is something "
     "else"},
    {"TableOfNumbers", "[installer]", "[installer]\nproperties = {a = 1}",
     "quorvane.toml:17: 'properties' in [installer] must be a table of strings; this is something "
     "else"},
    {"NoVersion", "version = \"3\"\n", "",
     "quorvane.toml: [application] needs the key 'version', for example version = \"1\""},
    {"NoName", "name = \"Small App\"", "name = \"\"",
     "quorvane.toml: [application] needs the key 'name', for example name = \"Hello\""},
    {"NoIdentifier", "identifier = \"org.example.small\"\n", "",
     "quorvane.toml: [application] needs the key 'identifier', for example identifier = "
     "\"org.example.hello\""},
    {"NameWithDash", "Small App", "Small-App",
     "quorvane.toml: [application] name is \"Small-App\"; folders are named after it, so it must "
     "have at most 60 bytes, no '/', '-', ':', '\\' or control character, no '.' or blank at its "
     "start and no blank at its end"},
    {"NameOutside", "Small App", "../Small",
     "quorvane.toml: [application] name is \"../Small\"; folders are named after it, so it must "
     "have at most 60 bytes, no '/', '-', ':', '\\' or control character, no '.' or blank at its "
     "start and no blank at its end"},
    {"NameTaken", "Small App", "Mac64JRE",
     "quorvane.toml: [application] name is \"Mac64JRE\", which names another component's folders; "
     "choose another one"},
    {"RuntimeNameTaken", "[runtime]", "[runtime]\nname = \"Quorvane\"",
     "quorvane.toml: [runtime] name is \"Quorvane\", which names the updater's folders; choose "
     "another one"},
    {"OddIdentifier", "org.example.small", "org.example.<small>",
     "quorvane.toml: [application] identifier is \"org.example.<small>\"; it may contain letters, "
     "digits, '.' and '-', for example org.example.hello"},
    {"VersionWithDots", "version = \"3\"", "version = \"1.3\"",
     "quorvane.toml: [application] version is \"1.3\"; versions are compared as whole numbers, so "
     "use up to 18 digits"},
    {"NoContent", "folder = \"app\"\n", "",
     "quorvane.toml: [application] needs 'jar', the application's only jar, or 'folder', its "
     "files"},
    {"TwoContents", "folder = \"app\"", "folder = \"app\"\njar = \"app/main.jar\"",
     "quorvane.toml: [application] has both 'jar' and 'folder'; remove one of them"},
    {"NoSuchFolder", "folder = \"app\"", "folder = \"application\"",
     "quorvane.toml: [application] folder names application, which is not an existing folder"},
    {"NoSuchJar", "folder = \"app\"", "jar = \"none.jar\"",
     "quorvane.toml: [application] jar names none.jar, which is not an existing file"},
    {"NoMainClass", "main_class = \"org.example.Main\"\n", "",
     "quorvane.toml: [application] needs the key 'main_class', for example main_class = "
     "\"org.example.Main\""},
    {"TwoLaunchFiles", "folder = \"app\"", "folder = \"updater/../updater\"",
     "quorvane.toml: [application] describes how to start, and updater/QuorvaneLaunch does too; "
     "remove that file, or main_class, class_path, arguments, jvm_options and maximum_heap_mb"},
    {"ClassPathBesideJar", "folder = \"app\"",
     "jar = \"app/main.jar\"\nclass_path = [\"main.jar\"]",
     "quorvane.toml: [application] has 'class_path' beside 'jar', which is the class path; remove "
     "it"},
    {"NegativeHeap", "folder = \"app\"", "folder = \"app\"\nmaximum_heap_mb = -1",
     "quorvane.toml: [application] maximum_heap_mb is -1; it must not be negative"},
    {"MissingIcon", "icon = \"small.icns\"", "icon = \"no.icns\"",
     "quorvane.toml: [application] icon is wrong: no.icns is not an existing file"},
    {"IconOfAnotherName", "icon = \"small.icns\"", "icon = \"app/main.jar\"",
     "quorvane.toml: [application] icon is wrong: app/main.jar is neither an .icns nor a .png "
     "image by its name"},
    {"PngIconOfOnePixel", "icon = \"small.icns\"", "icon = \"splash.png\"",
     "quorvane.toml: [application] icon is wrong: splash.png has 1 × 1 pixels; an icon is made "
     "from 1024 × 1024"},
    {"DisplayNameOfTwoLines", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndisplay_name = \"a\\nb\"",
     "quorvane.toml: [application] display_name has a control character; it is one line of text"},
    {"DisplayNameThatNoPlistHolds", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndisplay_name = \"a\\u0001b\"",
     "quorvane.toml: [application] display_name has a control character, which a property list "
     "cannot hold"},
    {"BlankDisplayName", "icon = \"small.icns\"", "icon = \"small.icns\"\ndisplay_name = \"  \"",
     "quorvane.toml: [application] display_name must have 1 to 255 bytes, and not only blanks"},
    {"DisplayVersionWithTab", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndisplay_version = \"1\\t2\"",
     "quorvane.toml: [application] display_version has a control character; it is one line of "
     "text"},
    {"CopyrightWithNoncharacter", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ncopyright = \"\\uFFFE\"",
     "quorvane.toml: [application] copyright has a control character, which a property list cannot "
     "hold"},
    {"UnknownCategory", "icon = \"small.icns\"", "icon = \"small.icns\"\ncategory = \"tools\"",
     "quorvane.toml: [application] category is \"tools\"; it is one of Apple's: action-games, "
     "adventure-games, arcade-games, board-games, business, card-games, casino-games, "
     "developer-tools, dice-games, education, educational-games, entertainment, family-games, "
     "finance, games, graphics-design, healthcare-fitness, kids-games, lifestyle, medical, music, "
     "music-games, news, photography, productivity, puzzle-games, racing-games, reference, "
     "role-playing-games, simulation-games, social-networking, sports, sports-games, "
     "strategy-games, travel, trivia-games, utilities, video, weather, word-games"},
    {"SchemeWithColon", "icon = \"small.icns\"", "icon = \"small.icns\"\nurl_schemes = [\"a:\"]",
     "quorvane.toml: [application] url_schemes has \"a:\"; a scheme is what stands before the "
     "colon, in small letters, digits, '+', '-' and '.', and begins with a letter"},
    {"SchemeInCapitals", "icon = \"small.icns\"", "icon = \"small.icns\"\nurl_schemes = [\"App\"]",
     "quorvane.toml: [application] url_schemes has \"App\"; a scheme is what stands before the "
     "colon, in small letters, digits, '+', '-' and '.', and begins with a letter"},
    {"SchemeThatBeginsWithADigit", "icon = \"small.icns\"",
     "icon = \"small.icns\"\nurl_schemes = [\"1a\"]",
     "quorvane.toml: [application] url_schemes has \"1a\"; a scheme is what stands before the "
     "colon, in small letters, digits, '+', '-' and '.', and begins with a letter"},
    {"EmptyScheme", "icon = \"small.icns\"", "icon = \"small.icns\"\nurl_schemes = [\"\"]",
     "quorvane.toml: [application] url_schemes has \"\"; a scheme is what stands before the colon, "
     "in small letters, digits, '+', '-' and '.', and begins with a letter"},
    {"SchemeOfFiles", "icon = \"small.icns\"", "icon = \"small.icns\"\nurl_schemes = [\"file\"]",
     "quorvane.toml: [application] url_schemes has \"file\"; files that the application opens are "
     "document_types"},
    {"DocumentTypeWithoutName", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{extensions = [\"a\"]}]",
     "quorvane.toml: [application] document_types has entry number 1 without a 'name' of one line, "
     "for example name = \"Letter\""},
    {"DocumentTypeOfNothing", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\"}]",
     "quorvane.toml: [application] document_types: \"A\" needs 'extensions' or 'content_types'"},
    {"DocumentTypeOfUnknownRole", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", extensions = [\"a\"], role = "
     "\"viewer\"}]",
     "quorvane.toml: [application] document_types: \"A\" has the role \"viewer\"; it is Editor, "
     "Viewer, Shell, QLGenerator or None"},
    {"ExtensionWithDot", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", extensions = [\".a\"]}]",
     "quorvane.toml: [application] document_types: \"A\" has the extension \".a\"; write it "
     "without the dot before it, for example \"txt\""},
    {"ContentTypeThatIsNone", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", content_types = [\"text/plain\"]}]",
     "quorvane.toml: [application] document_types: \"A\" has the content type \"text/plain\"; that "
     "is an identifier like org.example.letter or public.plain-text"},
    {"DocumentTypeWithMissingIcon", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", extensions = [\"a\"], icon = "
     "\"no.png\"}]",
     "quorvane.toml: [application] document_types: \"A\" has an icon, and no.png is not an "
     "existing file"},
    {"DocumentTypesThatAreNoList", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = \"a\"",
     "quorvane.toml:8: 'document_types' in [application] must be a list of tables with name, role, "
     "extensions, content_types and icon; this is string"},
    {"DocumentTypeWithUnknownKey", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", suffix = \"a\"}]",
     "quorvane.toml:8: 'document_types' in [application] must be a list of tables with name, role, "
     "extensions, content_types and icon; this is something else"},
    {"DocumentTypeWithOtherTypeOfKey", "icon = \"small.icns\"",
     "icon = \"small.icns\"\ndocument_types = [{name = \"A\", extensions = \"a\"}]",
     "quorvane.toml:8: 'document_types' in [application] must be a list of tables with name, role, "
     "extensions, content_types and icon; this is something else"},
    {"OwnEntryCFBundleExecutable", "[updater]",
     "[info_plist]\nCFBundleExecutable = \"a\"\n\n[updater]",
     "quorvane.toml: [info_plist] CFBundleExecutable must agree with the bundle, and is set from "
     "what the bundle holds; remove it"},
    {"OwnEntryCFBundlePackageType", "[updater]",
     "[info_plist]\nCFBundlePackageType = \"a\"\n\n[updater]",
     "quorvane.toml: [info_plist] CFBundlePackageType must agree with the bundle, and is set from "
     "what the bundle holds; remove it"},
    {"OwnEntryCFBundleIdentifier", "[updater]",
     "[info_plist]\nCFBundleIdentifier = \"a\"\n\n[updater]",
     "quorvane.toml: [info_plist] CFBundleIdentifier must agree with the bundle, and is set from "
     "'identifier' in [application]; remove it"},
    {"EntryThatNoPlistHolds", "[updater]",
     "[info_plist]\nX = [\"a\", {b = \"\\u0002\"}]\n\n[updater]",
     "quorvane.toml: [info_plist] X has a control character, which a property list cannot hold"},
    {"EntryWithAFraction", "[updater]", "[info_plist]\nX = [1.5]\n\n[updater]",
     "quorvane.toml:10: 'X' in [info_plist] must be a string, true or false, a whole number, or a "
     "list or a table of such"},
    {"EntryWithADate", "[updater]", "[info_plist]\nX = 2026-01-01\n\n[updater]",
     "quorvane.toml:10: 'X' in [info_plist] must be a string, true or false, a whole number, or a "
     "list or a table of such"},
    {"FolderWithoutJars", "folder = \"app\"", "folder = \"runtime\"",
     "runtime contains no jars; put the application's jars into it"},
    {"UpdaterVersionAloneThatIsNotLarger", "folder = \"updater\"\nversion = \"5\"",
     "version = \"2\"",
     "quorvane.toml: [updater] version is \"2\"; the packager's own updater is 2, so use a larger "
     "number, or none"},
    {"UpdatesBesideAnUpdater", "[runtime]", "[updates]\nkeep = 3\n\n[runtime]",
     "quorvane.toml: [updates] is for the packager's own updater, and [updater] names another one "
     "in 'folder'; remove either"},
    {"UnknownCheck", kOwnUpdater, "[updates]\ncheck = \"daily\"\n",
     "quorvane.toml: [updates] check is \"daily\"; it is background, before_start or never"},
    {"NegativeInterval", kOwnUpdater, "[updates]\ninterval = -1\n",
     "quorvane.toml: [updates] interval is -1; it is in seconds, 86400 for a day, at most a year"},
    {"IntervalOfYears", kOwnUpdater, "[updates]\ninterval = 31622401\n",
     "quorvane.toml: [updates] interval is 31622401; it is in seconds, 86400 for a day, at most a "
     "year"},
    {"IntervalInWords", kOwnUpdater, "[updates]\ninterval = \"a day\"\n",
     "quorvane.toml:10: 'interval' in [updates] must be a whole number; this is string"},
    {"OneVersionKept", kOwnUpdater, "[updates]\nkeep = 1\n",
     "quorvane.toml: [updates] keep is 1; keep 2 to 100 versions, because a version that does not "
     "start falls back to the previous one"},
    {"ChannelThatIsNoUrl", kOwnUpdater, "[updates]\nurl = \"beta\"\n",
     "quorvane.toml: [updates] url is \"beta\"; it must begin with http:// or https://, or be D if "
     "the property update_url gives it"},
    {"ChannelThatIsDynamic", kOwnUpdater, "[updates]\nurl = \"D\"\n",
     "quorvane.toml: [updates] url is \"D\"; leave it out to use the property update_url"},
    {"VersionWithAZeroInFront", "version = \"3\"", "version = \"03\"",
     "quorvane.toml: [application] version is \"03\"; a whole number has no leading zero, and "
     "updates with one are refused"},
    {"SilentWordThatIsTaken", "[installer]", "[installer]\nsilent_parameter = \"--install\"",
     "quorvane.toml: [installer] silent_parameter is \"--install\", an argument that installers "
     "use for something else; choose another"},
    {"UpdaterWithoutVersion", "version = \"5\"\n", "",
     "quorvane.toml: [updater] needs the key 'version', for example version = \"1\""},
    {"UpdaterWithoutLaunchFile", "folder = \"updater\"", "folder = \"app\"",
     "quorvane.toml: [updater] folder names app/QuorvaneLaunch, which is not an existing file"},
    {"TwoRuntimes", "folder = \"runtime\"", "folder = \"runtime\"\nmodules = [\"java.base\"]",
     "quorvane.toml: [runtime] has both 'folder', an existing runtime, and 'modules', 'jdk', "
     "'jmods' "
     "or 'jdk_archive', which make a new one; remove one of them"},
    {"RuntimeWithoutJava", "folder = \"runtime\"", "folder = \"app\"",
     "the runtime app has no bin/java; name a folder made by jlink, or a JDK"},
    {"NoJdk", "folder = \"runtime\"", "jdk = \"app\"",
     "the folder app is not a JDK: it has no bin/jlink; install a JDK (on Debian the package "
     "openjdk-17-jdk), or name its folder with --jdk"},
    {"SplashOfAnotherKind", "splash = \"splash.png\"", "splash = \"small.icns\"",
     "quorvane.toml: [installer] splash is wrong: small.icns is not a valid PNG image of at most "
     "4096 pixels a side"},
    {"UnknownInstallType", "[installer]", "[installer]\ninstall_type = \"perm_usr\"",
     "quorvane.toml: [installer] install_type is \"perm_usr\"; known are perm_all, perm_user and "
     "temporary"},
    {"NegativeSplashTime", "[installer]", "[installer]\nminimum_splash_ms = -1",
     "quorvane.toml: [installer] minimum_splash_ms is -1; it must not be negative"},
    {"SilentWordWithAZeroByte", "[installer]", "[installer]\nsilent_parameter = \"a\\u0000b\"",
     "quorvane.toml: [installer] silent_parameter contains a zero byte, which ends a text; remove "
     "it"},
    {"ArgumentWithAZeroByte", "folder = \"app\"",
     "folder = \"app\"\narguments = [\"a\", \"b\\u0000\"]",
     "quorvane.toml: [application] arguments contains a zero byte, which ends a text; remove it"},
    {"OptionWithAZeroByte", "folder = \"app\"", "folder = \"app\"\njvm_options = [\"-Da=\\u0000\"]",
     "quorvane.toml: [application] jvm_options contains a zero byte, which ends a text; remove it"},
    {"PropertyWithoutAName", "[installer]", "[installer]\nproperties = {\"\" = \"x\"}",
     "quorvane.toml: [installer.properties] has a property without a name; give it one"},
    {"NoJmods", "folder = \"runtime\"", "jmods = \"none\"",
     "quorvane.toml: [runtime] jmods names none, which is not an existing folder"},
    {"NoSplash", "splash.png", "none.png",
     "quorvane.toml: [installer] splash names none.png, which is not an existing file"},
    {"SignatureAsProperty", "[installer]",
     "[installer]\nproperties = {require_signature = \"true\"}",
     "quorvane.toml: [installer.properties] has require_signature; set it with "
     "'require_signature' in [installer]"},
    {"NoUrl", "[installer]", "[installer]\nupdate_url = \"updates.example.org\"",
     "quorvane.toml: [installer] update_url is \"updates.example.org\"; it must begin with http:// "
     "or https://, or be D if the property update_url gives it"},
    {"EmptyUrl", "[installer]", "[installer]\nupdate_url = \"\"",
     "quorvane.toml: [installer] update_url is \"\"; it must begin with http:// or https://, or be "
     "D if the property update_url gives it"},
    {"UrlWithoutServer", "[installer]", "[installer]\nupdate_url = \"http://\"",
     "quorvane.toml: [installer] update_url is \"http://\"; it names no server; write it like "
     "https://updates.example.org/hello"},
    {"UrlWithBlank", "[installer]", "[installer]\nupdate_url = \"http://example.org/a b\"",
     "quorvane.toml: [installer] update_url is \"http://example.org/a b\"; a URL contains only "
     "ASCII and no blanks; write others as %20 and so on"},
    {"RequiredJavaInWords", "[installer]", "[installer]\nrequired_java = \"seventeen\"",
     "quorvane.toml: [installer] required_java is \"seventeen\"; Java versions are compared as "
     "whole numbers; write 8 for Java 1.8"},
    {"RequiredJavaWithDot", "[installer]", "[installer]\nrequired_java = \"1.8\"",
     "quorvane.toml: [installer] required_java is \"1.8\"; Java versions are compared as whole "
     "numbers; write 8 for Java 1.8"},
    {"OwnProperty", "[installer]", "[installer]\nproperties = {jre_name = \"x\"}",
     "quorvane.toml: [installer.properties] has jre_name; set it with 'name' in [runtime]"},
    {"NoKey", "key = \"release.key\"\n", "",
     "quorvane.toml: [signing] needs the key 'key', because installers accept only signed "
     "archives; "
     "make one with 'quorvane-pack key new release.key', or set require_signature = false in "
     "[installer]"},
    {"NoSuchKey", "release.key", "none.key",
     "quorvane.toml: [signing] key names none.key, which is not an existing file"},
};

class PackProject : public testing::TestWithParam<WrongProject> {};

TEST_P(PackProject, ThatIsWrongIsRefusedWithWhatToDoAndMakesNothing) {
  test::SmallProject project;
  project.replace(GetParam().from, GetParam().to);
  project.build().fails(GetParam().message).prints("").leavesNo("dist/site");
}

INSTANTIATE_TEST_SUITE_P(All, PackProject, testing::ValuesIn(kWrongProjects),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PackProjectFile, WithATextThatIsNotReadToItsEndIsRefused) {
  const struct {
    const char* place;
    const char* before;
    const char* key;
    size_t length;
    const char* message;
  } texts[] = {{"[installer]", "silent_parameter = \"", "\"", 1023,
                "[installer] silent_parameter has a text of 1023 bytes; at most 1022 are read"},
               {"[installer]", "update_url = \"https://x/", "\"", 4989,
                "[installer] update_url has a text of 4999 bytes; at most 4998 are read"},
               {"[application]", "arguments = [\"", "\"]", 1023,
                "[application] arguments has a text of 1023 bytes; at most 1022 are read"},
               {"[application]", "jvm_options = [\"", "\"]", 1023,
                "[application] jvm_options has a text of 1023 bytes; at most 1022 are read"}};
  for (const auto& text : texts) {
    for (const size_t less : {0u, 1u}) {
      test::SmallProject project;
      project.replace(text.place, std::string(text.place) + "\n" + text.before +
                                      std::string(text.length - less, 'x') + text.key);
      project.build()
          .ends(less == 0 ? 1 : 0)
          .reports(less == 0 ? std::string("quorvane-pack: quorvane.toml: ") + text.message + "\n"
                             : "");
    }
  }
}

TEST(PackProjectFile, ThatDoesNotExistIsNamed) {
  const test::TempFolder folder;
  test::runPack(folder.path(), {"build"})
      .fails(
          "quorvane.toml does not exist; name a project file, or make one with 'quorvane-pack "
          "init'");
}

TEST(PackProjectFile, WithItsKeyInWhatIsPackedIsRefused) {
  test::SmallProject project;
  test::writeFile(project / "app/my.key", test::readFile(project / "release.key"), 0600);
  project.replace("release.key", "app/my.key");
  project.build().fails(
      "quorvane.toml: [signing] key names app/my.key, which is inside app and would be published "
      "with it; move it elsewhere");
}

TEST(PackProjectFile, WithAnOutputFolderInWhatIsPackedIsRefused) {
  const test::SmallProject project;
  project.build({"--output", "app/dist"})
      .fails(
          "the output folder app/dist is inside app, which is packed; choose another one with "
          "--output");
}

TEST(PackProjectFile, WithARuntimeOfUnknownVersionIsRefused) {
  const test::SmallProject project;
  test::writeFile(project / "runtime/release", "");
  project.build().fails(
      "quorvane.toml: [runtime] needs the key 'version', because runtime/release has none");
}

TEST(PackProjectFile, MayGiveVersionsWithoutQuotes) {
  test::SmallProject project;
  project.replace("version = \"3\"", "version = 3");
  project.build().ends(0);
}

}  // namespace
