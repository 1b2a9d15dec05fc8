#include "win32/desktop/message_queue.h"

#include <deque>
#include <optional>

#include "win32/desktop/desktop_clock.h"
#include "win32/desktop/input_queue.h"
#include "win32/desktop/timers.h"
#include "win32/desktop/visible_area.h"
#include "win32/last_error.h"

namespace {

struct MessageQueue {
    std::deque<MSG> posted;
    std::optional<int> quitCode;
    std::optional<MSG> seenInput; // looked at by PeekMessageA, not removed
    uint64_t lastPoll = 0;
};

MessageQueue& Queue() {
    static MessageQueue queue;
    return queue;
}

MSG StampedMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return {window, message, wParam, lParam, GetTickCount(), MessagePosition()};
}

bool TakePosted(MSG& message, bool remove) {
    MessageQueue& queue = Queue();
    if (queue.posted.empty()) return false;
    message = queue.posted.front();
    if (remove) queue.posted.pop_front();
    return true;
}

bool TakeQuit(MSG& message, bool remove) {
    MessageQueue& queue = Queue();
    if (!queue.quitCode) return false;
    message = StampedMessage(nullptr, WM_QUIT, static_cast<WPARAM>(*queue.quitCode), 0);
    if (remove) queue.quitCode.reset();
    return true;
}

bool TakeInput(MSG& message, bool remove) {
    MessageQueue& queue = Queue();
    if (queue.seenInput) {
        message = *queue.seenInput;
    } else if (!TakeInputMessage(message)) {
        return false;
    }
    queue.seenInput.reset();
    if (!remove) queue.seenInput = message;
    return true;
}

bool TakePaint(MSG& message) {
    const Window* window = FindWindowToPaint();
    if (window == nullptr) return false;
    message = StampedMessage(window->handle, WM_PAINT, 0, 0);
    return true;
}

bool TakeTimer(MSG& message, bool remove) {
    message = StampedMessage(nullptr, WM_TIMER, 0, 0);
    return TakeTimerMessage(message, remove);
}

bool TakeMessage(MSG& message, bool remove) {
    return TakePosted(message, remove) || TakeQuit(message, remove) || TakeInput(message, remove) ||
           TakePosted(message, remove) || TakePaint(message) || TakeTimer(message, remove);
}

// Input comes in also while a program is busy with messages of its own.
void PollSometimes() {
    constexpr uint64_t kLongestWithoutInput = 20; // milliseconds
    MessageQueue& queue = Queue();
    const uint64_t now = DesktopMilliseconds();
    if (now - queue.lastPoll < kLongestWithoutInput) return;
    queue.lastPoll = now;
    PollDisplay();
}

bool IsAsked(HWND window, UINT first, UINT last) {
    if (window == nullptr && first == 0 && last == 0) return true;
    RefuseLoudly("messages of one window or one kind alone");
    return false;
}

char ControlLetterOf(WPARAM key) {
    if (key == VK_BACK || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE)
        return static_cast<char>(key);
    const bool letter = key >= 'A' && key <= 'Z';
    return IsKeyTaken(VK_CONTROL) && letter ? static_cast<char>(key - 'A' + 1) : '\0';
}

char AltLetterOf(WPARAM key) {
    if (key >= 'A' && key <= 'Z') return static_cast<char>(key - 'A' + 'a');
    return key >= '0' && key <= '9' ? static_cast<char>(key) : '\0';
}

} // namespace

void ForgetMessagesOf(HWND window) {
    MessageQueue& queue = Queue();
    std::erase_if(queue.posted, [&](const MSG& each) { return each.hwnd == window; });
    if (queue.seenInput && queue.seenInput->hwnd == window) queue.seenInput.reset();
}

void ForgetMessages() {
    Queue() = {};
}

LRESULT SendMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const Window* window = WindowOf(handle);
    return window != nullptr ? window->procedure(handle, message, wParam, lParam) : 0;
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return procedure != nullptr ? procedure(window, message, wParam, lParam) : 0;
}

BOOL PostMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    if (handle != nullptr && WindowOf(handle) == nullptr) return FALSE;
    Queue().posted.push_back(StampedMessage(handle, message, wParam, lParam));
    return TRUE;
}

void PostQuitMessage(int code) {
    Queue().quitCode = code;
}

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last) {
    if (!IsAsked(window, first, last)) return -1;
    PollSometimes();
    for (;;) {
        if (TakeMessage(*message, true)) return message->message != WM_QUIT;
        WaitForDisplay(MillisecondsToTimer());
    }
}

BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    if (!IsAsked(window, first, last)) return FALSE;
    PollSometimes();
    if (TakeMessage(*message, remove == PM_REMOVE)) return TRUE;
    PollDisplay();
    return TakeMessage(*message, remove == PM_REMOVE);
}

BOOL TranslateMessage(const MSG* message) {
    if (message->message == WM_KEYDOWN) {
        if (const char letter = ControlLetterOf(message->wParam))
            PostMessageA(message->hwnd, WM_CHAR, static_cast<WPARAM>(letter), message->lParam);
    } else if (message->message == WM_SYSKEYDOWN) {
        if (const char letter = AltLetterOf(message->wParam))
            PostMessageA(message->hwnd, WM_SYSCHAR, static_cast<WPARAM>(letter), message->lParam);
    }
    return message->message >= WM_KEYDOWN && message->message <= WM_SYSKEYUP;
}

LRESULT DispatchMessageA(const MSG* message) {
    if (message->message == WM_TIMER && message->lParam != 0) {
        if (!IsTimerProcedure(message->lParam)) return 0;
        reinterpret_cast<TIMERPROC>(message->lParam)(message->hwnd, WM_TIMER, message->wParam,
                                                     GetTickCount());
        return 0;
    }
    return message->hwnd != nullptr
               ? SendMessageA(message->hwnd, message->message, message->wParam, message->lParam)
               : 0;
}
