/// The plug-in's actions as the host knows them.
///
/// Whatever changes a document runs inside the host's call for an action.  The panel puts its command into
/// `commandPending` and plays kInternalAction.
#pragma once

#include <cstdint>

inline constexpr char kInternalAction[] = "VELQUORNE_INTERNAL_ACTION";
inline constexpr char kPlaceAction[] = "VELQUORNE_PLACE";

/// The word that an action was registered with comes back with it.
constexpr int32_t kInternalWord = 0;
constexpr int32_t kPlaceWord = 2001;

/// Values of `commandPending`; 0 is none.
constexpr int32_t kPlaceCommand = 1001;    ///< drag the record of `selectedRow` onto the page
constexpr int32_t kRegisterCommand = 1003; ///< the selection becomes a record
