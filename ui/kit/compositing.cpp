#include "ui/kit/compositing.hpp"

#include <QByteArray>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace Kit {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

// A compositor owns the selection of its screen, and today a server has one screen.
bool hasCompositor(xcb_connection_t* server) {
    const QByteArray name = "_NET_WM_CM_S0";
    const auto asked = xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(server, asked, nullptr));
    if (!atom) return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

}  // namespace

bool isComposited() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return !x11 || hasCompositor(x11->connection());
}

}  // namespace Kit
