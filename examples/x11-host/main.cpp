// A program without Qt: its window and its event loop are X11's own. The live picture is a child of its window; the
// feature browser is a window of its own that tells the program's window what happens.

#include <LxBufferReceive/LxStream.h>
#include <LxGUI/LxDisplayWnd.h>
#include <LxGUI/LxGenBrowserWnd.h>
#include <LxSystem/LxSystem.h>
#include <poll.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

// What the library posts, as a client message of the type _LXGUI_MESSAGE with the data message, wParam, lParam.
const uint32_t SizeMessage = 5;              // lParam: height << 16 | width, after a window was embedded
const uint32_t DeviceResetMessage = 0x4C01;  // the user executed the feature DeviceReset

HWND ToHandle(xcb_window_t aWindow)
{
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(aWindow));
}

xcb_window_t ToWindow(HWND aHandle)
{
    return static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(aHandle));
}

xcb_atom_t GetAtom(xcb_connection_t *aConnection, const char *aName)
{
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(aConnection, 0, static_cast<uint16_t>(std::strlen(aName)), aName);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(aConnection, cookie, nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: x11-host ADDRESS   (of the camera)\n");
        return 2;
    }

    // What works on the device is declared after it and so destroyed before it.
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    std::unique_ptr<LxDevice> device;
    LxStream stream;
    LxResult result = system.FindDevice(argv[1], &info);
    if (result.IsOK()) {
        result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    }
    if (result.IsOK()) {
        result = stream.Open(device.get());
    }
    if (result.IsOK()) {
        result = stream.Start();
    }
    if (!result.IsOK()) {
        std::fprintf(stderr, "%s: %s\n", argv[1], result.GetDescription().GetAscii());
        return 1;
    }

    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "There is no X server.\n");
        return 1;
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    const uint32_t values[] = {screen->black_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 40, 40, 640, 480, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                      values);
    const char title[] = "A window of X11";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        sizeof(title) - 1, title);
    const xcb_atom_t protocols = GetAtom(connection, "WM_PROTOCOLS");
    const xcb_atom_t deleteWindow = GetAtom(connection, "WM_DELETE_WINDOW");
    const xcb_atom_t libraryMessage = GetAtom(connection, "_LXGUI_MESSAGE");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, protocols, XCB_ATOM_ATOM, 32, 1, &deleteWindow);
    xcb_map_window(connection, window);
    xcb_flush(connection);

    {
        LxDisplayWnd display;  // makes the QApplication that this program does not have
        result = display.Create(ToHandle(window), 0);
        if (!result.IsOK()) {
            std::fprintf(stderr, "The picture was not embedded: %s\n", result.GetCodeString().GetAscii());
            return 1;
        }

        LxGenBrowserWnd browser;
        browser.SetTitle("Features");
        browser.SetPosition(720, 40, 520, 480);
        browser.SetVisibility(LxGenVisibilityGuru);
        browser.SetGenParameterArray(device->GetParameters());
        browser.ShowModeless(ToHandle(window));

        std::shared_ptr<const LxBuffer> buffer;
        for (bool open = true; open;) {
            // the program's own events: at most 10 ms until Qt and the picture have their turn
            pollfd input = {xcb_get_file_descriptor(connection), POLLIN, 0};
            poll(&input, 1, 10);
            while (xcb_generic_event_t *event = xcb_poll_for_event(connection)) {
                switch (event->response_type & 0x7F) {
                    case XCB_CONFIGURE_NOTIFY: {
                        // the picture fills the window
                        const auto *configure = reinterpret_cast<xcb_configure_notify_event_t *>(event);
                        const uint32_t size[] = {configure->width, configure->height};
                        xcb_configure_window(connection, ToWindow(display.GetHandle()),
                                             XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
                        xcb_flush(connection);
                        break;
                    }
                    case XCB_CLIENT_MESSAGE: {
                        const auto *message = reinterpret_cast<xcb_client_message_event_t *>(event);
                        const uint32_t *data = message->data.data32;
                        if (message->type == protocols && data[0] == deleteWindow) {
                            open = false;
                        }
                        else if (message->type == libraryMessage && data[0] == SizeMessage) {
                            std::printf("The picture has %u x %u pixels.\n", data[2] & 0xFFFF, data[2] >> 16);
                        }
                        else if (message->type == libraryMessage && data[0] == DeviceResetMessage) {
                            std::printf("The camera restarts.\n");
                        }
                        break;
                    }
                    default:
                        break;
                }
                std::free(event);
            }
            std::fflush(stdout);
            LxWnd::DoEvents();
            if (stream.RetrieveBuffer(buffer, 0).IsOK()) {
                display.Display(*buffer);
            }
        }
    }  // the windows go before the window that they are in

    xcb_disconnect(connection);
    return 0;
}
