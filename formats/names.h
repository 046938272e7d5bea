#ifndef QUORVANE_FORMATS_NAMES_H
#define QUORVANE_FORMATS_NAMES_H

// The names that installers, update sites and the packager agree on.

// The updater's name in the names of its version folders.
constexpr char UPDATER_NAME[] = "Quorvane";

// The runtime's default component name.
constexpr char DEFAULT_JRE_NAME[] = "Mac64JRE";

// The update URL that a packager writes if there is no update site: an address reserved for
// documentation.
constexpr char INVALID_UPDATE_URL[] = "http://192.0.2.10/";

// The name of the record in an update site's archive that says what the archive is. It contains the
// component's name, a blank and the version. For an updater UPDATER_RECORD_LINK and the
// application's name follow, because the updater's settings are made for that application:
// another's would lead to another site.
constexpr char COMPONENT_RECORD_PATH[] = "qvArcSpBlock_Component";
constexpr char UPDATER_RECORD_LINK[] = " for ";

#endif
