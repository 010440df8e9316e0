#include <gio/gio.h>

#include <cstdlib>
#include <thread>

#include "utilities/linux/system/UDisksConnection.h"

namespace {

GVariant* objects = nullptr;

/// Answers calls in place of the bus and of the disk service on it.
GDBusMessage* answer(GDBusConnection* bus, GDBusMessage* call, gboolean isIncoming, gpointer) {
    if (!isIncoming) return call;
    const std::string_view method = g_dbus_message_get_member(call);
    GDBusMessage* const reply = g_dbus_message_new_method_reply(call);
    g_dbus_message_set_body(reply, method == "GetManagedObjects"    ? g_variant_new_tuple(&objects, 1)
                                   : method == "StartServiceByName" ? g_variant_new("(u)", 2)
                                                                    : g_variant_new("(s)", ":1.1"));
    g_dbus_connection_send_message(bus, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(reply);
    g_object_unref(call);
    return nullptr;
}

gboolean welcome(GDBusServer*, GDBusConnection* bus, gpointer) {
    return g_dbus_connection_add_filter(g_object_ref(bus), answer, nullptr, nullptr) > 0;
}

}  // namespace

/// Turns the leak check off, because the bus's own thread still holds memory after an input.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer asks for it by this name.
extern "C" int __lsan_is_turned_off() {
    return 1;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The library logs a warning for each property that lacks the type it should have.
    g_log_set_writer_func([](auto...) { return G_LOG_WRITER_HANDLED; }, nullptr, nullptr);
    GDBusServer* const server =
        g_dbus_server_new_sync("unix:tmpdir=/tmp", G_DBUS_SERVER_FLAGS_NONE,
                               "00000000000000000000000000000001", nullptr, nullptr, nullptr);
    g_signal_connect(server, "new-connection", G_CALLBACK(welcome), nullptr);
    g_dbus_server_start(server);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", g_dbus_server_get_client_address(server), 1);
    std::thread([] { g_main_loop_run(g_main_loop_new(nullptr, FALSE)); }).detach();
    return 0;
}

/// Checks that records are made of any objects of the disk service, which are written as GLib writes values.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    const auto* const text = reinterpret_cast<const char*>(bytes);
    objects = g_variant_parse(G_VARIANT_TYPE("a{oa{sa{sv}}}"), text, text + size, nullptr, nullptr);
    if (!objects) return -1;
    const tessel::UDisksConnection connection;
    static_cast<void>(connection.recordOf(1));
    static_cast<void>(connection.recordOf(2));
    if (connection.recordOf(0)) std::abort();
    g_variant_unref(objects);
    return 0;
}
