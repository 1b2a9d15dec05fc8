#include "plugin/dialogs/store_messages.h"

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/frame/globals.h"

namespace {

struct TroubleText {
    StoreTrouble trouble;
    const char* english;
    const char* japanese;
};

constexpr TroubleText kTexts[] = {
    {StoreTrouble::kBusy,
     "The database is in use by another program or another machine.\r\nNothing was changed. Please try "
     "again.",
     "データベースは他のプログラムまたは他のマシンで使用中です。\r\n"
     "何も変更されていません。もう一度お試しください。"},
    {StoreTrouble::kUnfinished,
     "A change of the database could not be finished because its files can't be written at the moment.\r\n"
     "It will be finished with the next change.",
     "ファイルに書き込めないため、データベースの変更を完了できませんでした。\r\n次の変更のときに完了します"
     "。"},
    {StoreTrouble::kDamaged, "The group file is damaged.\r\nNothing was changed.",
     "グループのファイルが壊れています。\r\n何も変更されていません。"},
    {StoreTrouble::kRefused,
     "This is not possible: the record or the place is not there, or the group would become too large.\r\n"
     "Nothing was changed.",
     "実行できません。データまたは場所が存在しないか、グループが大きくなりすぎます。\r\n"
     "何も変更されていません。"},
    {StoreTrouble::kDisk,
     "The file can't be read or written. The disk may be full, write-protected or disconnected.\r\n"
     "Nothing was changed.",
     "ファイルを読み書きできません。ディスクの空き容量、書き込み禁止、接続を確認してください。\r\n"
     "何も変更されていません。"},
    {StoreTrouble::kMemory, "There is not enough memory.\r\nNothing was changed.",
     "メモリが足りません。\r\n何も変更されていません。"},
};

constexpr char kAnotherRecord[] =
    "The group was changed by another program or another machine in the meantime.\r\n"
    "Nothing was changed. Please look at the list and try again.";
constexpr char kAnotherRecordJapanese[] =
    "グループが他のプログラムまたは他のマシンで変更されました。\r\n"
    "何も変更されていません。一覧を確認して、もう一度お試しください。";

} // namespace

const char* StoreTroubleText(StoreTrouble trouble, int language) {
    for (const TroubleText& text : kTexts) {
        if (text.trouble == trouble) return language != 0 ? text.english : text.japanese;
    }
    return "";
}

void TellStoreTrouble() {
    if (globals->storeTrouble == StoreTrouble::kNone) return;
    TellUser(StoreTroubleText(globals->storeTrouble, globals->language));
}

void TellRecordIsAnother() {
    TellUser(globals->language != 0 ? kAnotherRecord : kAnotherRecordJapanese);
}
