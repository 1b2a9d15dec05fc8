#include "app/hands_player.h"

#include <algorithm>
#include <cstring>

#include "workbench/frame/alert_window.h"

using workbench::PopupItem;

namespace {

POINT MiddleOf(const RECT& rectangle) {
    return {(rectangle.left + rectangle.right) / 2, (rectangle.top + rectangle.bottom) / 2};
}

RECT OnScreen(HWND window, RECT rectangle) {
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&rectangle), 2);
    return rectangle;
}

/// The numbers of the items that lead to one of this text; empty if there is none.
std::vector<int> PathToItem(const std::vector<PopupItem>& items, const std::string& text) {
    for (const PopupItem& item : items) {
        if (item.separator || !item.enabled) continue;
        if (item.text == text && item.items.empty()) return {item.number};
        std::vector<int> path = PathToItem(item.items, text);
        if (path.empty()) continue;
        path.insert(path.begin(), item.number);
        return path;
    }
    return {};
}

} // namespace

HandsPlayer::HandsPlayer(HeadlessDisplay& display, workbench::Host& host, workbench::Workspace& workspace,
                         std::vector<HandStep> steps, std::string pictureFolder)
    : display_(display),
      host_(host),
      workspace_(workspace),
      steps_(std::move(steps)),
      folder_(std::move(pictureFolder)) {}

void HandsPlayer::Begin() {
    display_.Do([this] { Next(); });
}

void HandsPlayer::Next() {
    if (next_ == steps_.size()) {
        if (end) end();
        return;
    }
    const HandStep& step = steps_[next_++];
    if (step.hand == Hand::kPickFlyout) {
        PickFlyout(step);
    } else if (step.hand == Hand::kPickMenu) {
        PickMenu(step);
    } else {
        Play(step);
        GoOn();
    }
}

void HandsPlayer::GoOn() {
    display_.Do([this] { Next(); });
}

void HandsPlayer::Fail(int line, const std::string& sentence) {
    if (failed) failed(line, sentence);
}

HWND HandsPlayer::Panel() {
    return host_.panels().empty()
               ? nullptr
               : static_cast<HWND>(workspace_.windows().PlatformWindow(*host_.panels().front()));
}

void HandsPlayer::Play(const HandStep& step) {
    const std::vector<int>& n = step.numbers;
    switch (step.hand) {
        case Hand::kMove:
            display_.Move(n[0], n[1]);
            break;
        case Hand::kPress:
            display_.Press();
            break;
        case Hand::kRelease:
            display_.Release();
            break;
        case Hand::kClick:
            display_.Click(n[0], n[1]);
            break;
        case Hand::kDoubleClick:
            display_.DoubleClick(n[0], n[1]);
            break;
        case Hand::kDrag:
            display_.Drag({n[0], n[1]}, {n[2], n[3]}, std::max(1, n[4]));
            break;
        case Hand::kWheel:
            display_.Wheel(n[0]);
            break;
        case Hand::kKey:
            if (step.modifier != 0) {
                display_.KeyWith(step.modifier, step.key);
            } else {
                display_.Key(step.key);
            }
            break;
        case Hand::kType:
            display_.Type(std::u8string(step.texts[0].begin(), step.texts[0].end()));
            break;
        case Hand::kPause:
            display_.Pause(static_cast<uint32_t>(n[0]));
            break;
        case Hand::kPicture:
            if (!folder_.empty() && !display_.SavePng(folder_ + "/" + step.texts[0] + ".png"))
                Fail(step.line, "the picture can't be written");
            break;
        case Hand::kPickFlyout:
        case Hand::kPickMenu:
            break; // take more than one turn
        case Hand::kAnswer:
            Answer(step);
            break;
        case Hand::kControl:
        case Hand::kControlAt:
        case Hand::kDoubleControlAt:
            ClickWindow(step, Panel(), "the panel");
            break;
        case Hand::kDialog:
            ClickWindow(step, GetActiveWindow(), "the active window");
            break;
    }
}

void HandsPlayer::ClickWindow(const HandStep& step, HWND parent, const char* whose) {
    const HWND window = parent ? GetDlgItem(parent, step.numbers[0]) : nullptr;
    if (!window || !IsWindowVisible(window)) {
        Fail(step.line, std::string(whose) + " has no such control to be seen");
        return;
    }
    RECT client;
    GetClientRect(window, &client);
    const RECT place = OnScreen(window, client);
    POINT at = MiddleOf(place);
    if (step.numbers.size() == 3) at = {place.left + step.numbers[1], place.top + step.numbers[2]};
    if (step.hand == Hand::kDoubleControlAt) {
        display_.DoubleClick(at.x, at.y);
    } else {
        display_.Click(at.x, at.y);
    }
}

void HandsPlayer::PickItems(int line, std::vector<int> numbers) {
    if (numbers.empty()) return GoOn();
    const RECT place = workbench::PopupItemRect(numbers.front());
    if (IsRectEmpty(&place)) {
        Fail(line, "the menu has no such entry");
        return;
    }
    const POINT at = MiddleOf(place);
    display_.Move(at.x, at.y).Click(at.x, at.y);
    const int picked = numbers.front();
    numbers.erase(numbers.begin());
    const bool last = numbers.empty();
    display_.Do([this, line, picked, last, rest = std::move(numbers)] {
        const RECT still = workbench::PopupItemRect(picked);
        if (last && !IsRectEmpty(&still)) Fail(line, "the entry can't be picked");
        PickItems(line, rest);
    });
}

void HandsPlayer::PickFlyout(const HandStep& step) {
    workbench::PanelFrame* frame =
        host_.panels().empty() ? nullptr : workspace_.windows().FrameOf(*host_.panels().front());
    if (!frame || !IsWindowVisible(frame->window())) {
        Fail(step.line, "there is no panel to be seen");
        return;
    }
    const POINT at = MiddleOf(OnScreen(frame->window(), frame->FlyoutButton()));
    display_.Click(at.x, at.y);
    display_.Do([this, line = step.line, number = step.numbers[0]] { PickItems(line, {number}); });
}

void HandsPlayer::PickMenu(const HandStep& step) {
    const char* const titles[] = {"File", "Edit", "View", "Window", "Help"};
    const auto title = std::ranges::find(titles, step.texts[0]);
    if (title == std::end(titles)) {
        Fail(step.line, "the menu bar has no such title");
        return;
    }
    const size_t menu = static_cast<size_t>(title - std::begin(titles));
    const std::vector<int> path = PathToItem(workspace_.MenuItems(menu), step.texts[1]);
    if (path.empty()) {
        Fail(step.line, "the menu has no such item that can be picked");
        return;
    }
    const POINT at = MiddleOf(OnScreen(workspace_.windows().window(), workspace_.menus().TitleRect(menu)));
    display_.Click(at.x, at.y);
    display_.Do([this, line = step.line, path] { PickItems(line, path); });
}

void HandsPlayer::Answer(const HandStep& step) {
    char name[32] = {};
    const HWND alert = GetActiveWindow();
    if (alert) GetClassNameA(alert, name, sizeof name);
    constexpr int kAnswers[] = {workbench::kAlertNo, workbench::kAlertYes, workbench::kAlertCancel};
    const int id = kAnswers[step.numbers[0]];
    if (std::strcmp(name, workbench::kAlertClass) != 0 || !GetDlgItem(alert, id)) {
        Fail(step.line, "there is nothing to answer so");
        return;
    }
    ClickWindow({.line = step.line, .hand = Hand::kDialog, .numbers = {id}, .texts = {}}, alert, "the alert");
}
