#include "ToastWindow.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <utility>

#include <windowsx.h>

#include "CallRecord.h"
#include "OwnThread.h"
#include "Text.h"
#include "ToastLayout.h"

namespace brisk::standin {

namespace {

constexpr wchar_t kWindowClass[] = L"NotificationStandinToast";
constexpr int kScreenMargin = 16;
constexpr int kToastGap = 12;

constexpr COLORREF kCard = RGB(0x1F, 0x1F, 0x1F);
constexpr COLORREF kBorder = RGB(0x45, 0x45, 0x45);
constexpr COLORREF kButton = RGB(0x3E, 0x3E, 0x3E);
constexpr COLORREF kHotButton = RGB(0x56, 0x56, 0x56);
constexpr COLORREF kPressedButton = RGB(0x70, 0x70, 0x70);
constexpr COLORREF kText = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF kSubtleText = RGB(0xB4, 0xB4, 0xB4);
constexpr COLORREF kAccent = RGB(0x00, 0x8A, 0xE6);

// The parts of a toast that a click can meet: its buttons by number, and two more.
constexpr int kBody = -1;
constexpr int kClose = -2;
constexpr int kNothing = -3;

// The places of the toasts that are drawn now. Never destroyed: window threads may outlive static objects.
std::mutex& placesMutex = *new std::mutex;
std::list<RECT>& places = *new std::list<RECT>;

void fill(HDC device, const RECT& area, COLORREF colour) {
    SetDCBrushColor(device, colour);
    FillRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

class Toast {
public:
    Toast(unsigned itsNumber, std::shared_ptr<const ToastContent> itsContent, const std::wstring& application,
          ToastReactions itsReactions)
        : number(itsNumber), content(std::move(itsContent)), reactions(std::move(itsReactions)) {
        HDC screen = GetDC(nullptr);
        layout = layOut(screen, fonts, *content, application);
        ReleaseDC(nullptr, screen);
    }

    void run(HANDLE closeRequest) {
        const auto place = takePlace();
        if (create(*place)) {
            ShowWindow(window, SW_SHOWNOACTIVATE);
            UpdateWindow(window);
            record(*place);
            pump(closeRequest);
            DestroyWindow(window);
        }
        std::lock_guard lock(placesMutex);
        places.erase(place);
    }

private:
    std::list<RECT>::iterator takePlace() const {
        RECT work{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        std::lock_guard lock(placesMutex);
        LONG bottom = work.bottom - kScreenMargin;
        for (const RECT& taken : places) {
            bottom = std::min(bottom, taken.top - kToastGap);
        }
        const LONG right = work.right - kScreenMargin;
        return places.insert(places.end(), {right - layout.size.cx, bottom - layout.size.cy, right, bottom});
    }

    bool create(const RECT& place) {
        static const ATOM windowClass = [] {
            WNDCLASSW description{};
            description.lpfnWndProc = handle;
            description.hInstance = GetModuleHandleW(nullptr);
            description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
            description.lpszClassName = kWindowClass;
            return RegisterClassW(&description);
        }();
        window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE,
                                 reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(windowClass)),
                                 content->title().c_str(), WS_POPUP, place.left, place.top, layout.size.cx,
                                 layout.size.cy, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        if (!window) {
            recordLine("Error cannot draw notification " + std::to_string(number) + ": " +
                       std::to_string(GetLastError()));
            return false;
        }
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        return true;
    }

    void record(const RECT& place) const {
        const auto centre = [&](const RECT& area) {
            return std::to_string(place.left + (area.left + area.right) / 2) + " " +
                   std::to_string(place.top + (area.top + area.bottom) / 2);
        };
        const std::string n = std::to_string(number);
        recordLine("Body " + n + " " + centre(layout.icon));
        recordLine("Close " + n + " " + centre(layout.close));
        for (size_t k = 0; k < layout.buttons.size(); ++k) {
            recordLine("Button " + n + " " + std::to_string(k) + " " + centre(layout.buttons[k]) + " " +
                       escaped(content->actions[k].label));
        }
    }

    static void pump(HANDLE closeRequest) {
        while (MsgWaitForMultipleObjects(1, &closeRequest, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
        }
    }

    static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* toast = reinterpret_cast<Toast*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        return toast ? toast->react(message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
    }

    LRESULT react(UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
        case WM_PAINT:
            paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        case WM_MOUSEMOVE:
            follow(partAt(lParam));
            return 0;
        case WM_MOUSELEAVE:
            follow(kNothing);
            return 0;
        case WM_LBUTTONDOWN:
            pressed = partAt(lParam);
            InvalidateRect(window, nullptr, FALSE);
            return 0;
        case WM_LBUTTONUP:
            click(partAt(lParam));
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
        }
    }

    int partAt(LPARAM position) const {
        const POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
        if (PtInRect(&layout.close, point)) {
            return kClose;
        }
        for (size_t k = 0; k < layout.buttons.size(); ++k) {
            if (PtInRect(&layout.buttons[k], point)) {
                return static_cast<int>(k);
            }
        }
        return kBody;
    }

    void follow(int part) {
        if (part != hot) {
            hot = part;
            InvalidateRect(window, nullptr, FALSE);
        }
        TRACKMOUSEEVENT leaving{sizeof leaving, TME_LEAVE, window, 0};
        TrackMouseEvent(&leaving);
    }

    void click(int part) {
        const bool meant = part == std::exchange(pressed, kNothing);
        InvalidateRect(window, nullptr, FALSE);
        if (!meant) {
            return;
        }
        if (part == kClose) {
            reactions.close(0);
        } else if (part == kBody) {
            reactions.body(0);
        } else {
            reactions.button(static_cast<size_t>(part));
        }
    }

    void paint() const {
        PAINTSTRUCT painting;
        HDC device = BeginPaint(window, &painting);
        HDC memory = CreateCompatibleDC(device);
        HBITMAP bitmap = CreateCompatibleBitmap(device, layout.size.cx, layout.size.cy);
        HGDIOBJ previous = SelectObject(memory, bitmap);
        draw(memory);
        BitBlt(device, 0, 0, layout.size.cx, layout.size.cy, memory, 0, 0, SRCCOPY);
        SelectObject(memory, previous);
        DeleteObject(bitmap);
        DeleteDC(memory);
        EndPaint(window, &painting);
    }

    void draw(HDC device) const {
        const RECT card{0, 0, layout.size.cx, layout.size.cy};
        fill(device, card, kBorder);
        fill(device, {1, 1, card.right - 1, card.bottom - 1}, kCard);
        drawIcon(device);
        drawClose(device);
        for (const TextPiece& text : layout.texts) {
            drawText(device, text);
        }
        for (size_t k = 0; k < layout.buttons.size(); ++k) {
            const int part = static_cast<int>(k);
            fill(device, layout.buttons[k], part == pressed ? kPressedButton : part == hot ? kHotButton : kButton);
            drawText(device, layout.labels[k]);
        }
    }

    void drawText(HDC device, const TextPiece& piece) const {
        RECT area = piece.area;
        HGDIOBJ previous = SelectObject(device, fonts.get(piece.font));
        SetBkMode(device, TRANSPARENT);
        SetTextColor(device, piece.subtle ? kSubtleText : kText);
        DrawTextW(device, piece.text.c_str(), static_cast<int>(piece.text.size()), &area, piece.format);
        SelectObject(device, previous);
    }

    // A plain application symbol: the stand-in knows no application's own.
    void drawIcon(HDC device) const {
        const RECT& icon = layout.icon;
        fill(device, icon, kAccent);
        fill(device, {icon.left + 4, icon.top + 5, icon.right - 4, icon.top + 7}, kText);
        fill(device, {icon.left + 4, icon.bottom - 7, icon.right - 7, icon.bottom - 5}, kText);
    }

    void drawClose(HDC device) const {
        const RECT& close = layout.close;
        if (hot == kClose) {
            fill(device, close, kButton);
        }
        const int x = (close.left + close.right) / 2;
        const int y = (close.top + close.bottom) / 2;
        HGDIOBJ previous = SelectObject(device, GetStockObject(DC_PEN));
        SetDCPenColor(device, hot == kClose ? kText : kSubtleText);
        MoveToEx(device, x - 5, y - 5, nullptr);
        LineTo(device, x + 6, y + 6);
        MoveToEx(device, x + 5, y - 5, nullptr);
        LineTo(device, x - 6, y + 6);
        SelectObject(device, previous);
    }

    const unsigned number;
    const std::shared_ptr<const ToastContent> content;
    const ToastReactions reactions;
    const ToastFonts fonts;
    ToastLayout layout;
    HWND window = nullptr;
    int hot = kNothing;
    int pressed = kNothing;
};

} // namespace

ToastWindow::ToastWindow(unsigned number, const std::shared_ptr<const ToastContent>& content,
                         const std::wstring& application, ToastReactions reactions)
    : closeRequest(std::make_shared<UniqueHandle>(CreateEventW(nullptr, TRUE, FALSE, nullptr))) {
    startThread([request = closeRequest, number, content, application, reactions = std::move(reactions)] {
        Toast(number, content, application, reactions).run(request->get());
    });
}

ToastWindow::~ToastWindow() {
    SetEvent(closeRequest->get());
}

} // namespace brisk::standin
