/// Plays a file of hands on a headless desktop.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/hands_file.h"
#include "win32/headless/headless_display.h"
#include "workbench/frame/workspace.h"

/// Queues the steps, one behind the other, so that each finds the windows as the one before it left them;
/// then `end` is called.  A step that can't be done, or a picture that can't be written, ends the program:
/// `failed` gets the line and a sentence, and doesn't return.
class HandsPlayer {
public:
    HandsPlayer(HeadlessDisplay& display, workbench::Host& host, workbench::Workspace& workspace,
                std::vector<HandStep> steps, std::string pictureFolder);

    void Begin();
    std::function<void()> end;
    std::function<void(int line, const std::string& sentence)> failed;

private:
    void Next();
    void Play(const HandStep& step); ///< all but picks, which go on by themselves
    void ClickWindow(const HandStep& step, HWND parent, const char* whose);
    void PickFlyout(const HandStep& step);
    void PickMenu(const HandStep& step);
    void PickItems(int line, std::vector<int> numbers); ///< of the open menu and its submenus, and goes on
    void GoOn();
    void Answer(const HandStep& step);
    HWND Panel();
    void Fail(int line, const std::string& sentence);

    HeadlessDisplay& display_;
    workbench::Host& host_;
    workbench::Workspace& workspace_;
    std::vector<HandStep> steps_;
    std::string folder_;
    size_t next_ = 0;
};
