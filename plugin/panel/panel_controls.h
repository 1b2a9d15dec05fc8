/// The panel's child windows by their numbers, which are their ids too.
#pragma once

enum PanelControl : int {
    kNewButton = 1,
    kDeleteButton = 2,
    kSettingButton = 3,
    kGroupCombo = 4,
    kSeparator = 5,
    kOriginControl = 6,
    kNewFolderButton = 11,
    kNewGroupButton = 12,
    kDeleteGroupButton = 13,
    kGroupSettingButton = 14,
    kSearchButton = 15,
    kFolderListButton = 16,
    kRecordList = 1001,
    kRecordScroll = 1002,
    kFolderList = 1003,
    kFolderScroll = 1004,
};
