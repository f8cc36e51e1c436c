#include "platform/calendar/Glib.h"
#include "testing/Wait.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

// Another program that uses the desktop's calendars, for putting events there and for looking at
// what became of them. It takes one command a line on descriptor 3; what each prints ends in a line
// "answered N", and begins with "error" where it failed.
//   new NAME            makes a calendar of that name, which is its id too
//   readonly NAME       makes one that cannot be changed
//   disable NAME        takes it out of the enabled ones
//   add NAME FILE       adds every event of the file, zones and detached occurrences too
//   remove NAME UID
//   get NAME UID        prints the event and its detached occurrences, as the server keeps them
//   list NAME           prints every event

namespace {

[[noreturn]] void fail(GError* error) {
    throw std::runtime_error(error != nullptr ? error->message : "no reason told");
}

std::string textOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

struct Client {
    GError* error = nullptr;
    ESourceRegistry* registry = e_source_registry_new_sync(nullptr, &error);
    std::map<std::string, ECalClient*> calendars;

    void make(const std::string& name, bool canBeChanged) {
        ESource* source = e_source_new_with_uid(name.c_str(), nullptr, &error);
        if (source == nullptr) fail(error);
        e_source_set_display_name(source, name.c_str());
        e_source_set_parent(source, "local-stub");
        e_source_backend_set_backend_name(
            E_SOURCE_BACKEND(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR)), "local");
        auto* const local = static_cast<ESourceLocal*>(
            e_source_get_extension(source, E_SOURCE_EXTENSION_LOCAL_BACKEND));
        e_source_local_set_writable(local, canBeChanged ? TRUE : FALSE);
        if (!canBeChanged) {
            const std::string path = std::string(g_get_home_dir()) + "/" + name + ".ics";
            std::ofstream(path) << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n";
            GFile* const file = g_file_new_for_path(path.c_str());
            e_source_local_set_custom_file(local, file);
            g_object_unref(file);
        }
        if (!e_source_registry_commit_source_sync(registry, source, nullptr, &error)) fail(error);
    }

    ESource* source(const std::string& name) {
        for (int attempt = 0; attempt < 1000; ++attempt) {
            if (ESource* found = e_source_registry_ref_source(registry, name.c_str())) return found;
            g_main_context_iteration(nullptr, TRUE); // the registry tells of what was made
        }
        throw std::runtime_error("no calendar " + name);
    }

    void disable(const std::string& name) {
        ESource* const found = source(name);
        e_source_set_enabled(found, FALSE);
        if (!e_source_write_sync(found, nullptr, &error)) fail(error);
    }

    ECalClient* open(const std::string& name) {
        ECalClient*& client = calendars[name];
        if (client == nullptr) {
            // The registry tells the server of a new calendar in its own time.
            EClient* made = nullptr;
            const auto connects = [&] {
                g_clear_error(&error);
                made = e_cal_client_connect_sync(source(name), E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                                 static_cast<guint32>(-1), nullptr, &error);
                return made != nullptr;
            };
            if (!support::waitUntil(connects)) fail(error);
            client = E_CAL_CLIENT(made);
        }
        return client;
    }

    void add(const std::string& name, const std::string& path) {
        ICalComponent* const parsed = i_cal_parser_parse_string(textOf(path).c_str());
        if (parsed == nullptr) throw std::runtime_error("cannot parse " + path);
        i_cal_component_set_method(parsed, I_CAL_METHOD_PUBLISH);
        if (!e_cal_client_receive_objects_sync(open(name), parsed, E_CAL_OPERATION_FLAG_NONE,
                                               nullptr, &error))
            fail(error);
    }

    void remove(const std::string& name, const std::string& uid) {
        if (!e_cal_client_remove_object_sync(open(name), uid.c_str(), nullptr, E_CAL_OBJ_MOD_ALL,
                                             E_CAL_OPERATION_FLAG_NONE, nullptr, &error))
            fail(error);
    }

    void get(const std::string& name, const std::string& uid) {
        GSList* objects = nullptr;
        if (!e_cal_client_get_objects_for_uid_sync(open(name), uid.c_str(), &objects, nullptr,
                                                   &error))
            fail(error);
        for (GSList* at = objects; at != nullptr; at = at->next) {
            gchar* const text =
                e_cal_component_get_as_string(static_cast<ECalComponent*>(at->data));
            (void)std::fputs(text, stdout);
            g_free(text);
        }
        e_client_util_free_object_slist(objects);
    }

    void list(const std::string& name) {
        GSList* objects = nullptr;
        if (!e_cal_client_get_object_list_sync(open(name), "#t", &objects, nullptr, &error))
            fail(error);
        for (GSList* at = objects; at != nullptr; at = at->next) {
            gchar* const text = i_cal_component_as_ical_string(I_CAL_COMPONENT(at->data));
            (void)std::fputs(text, stdout);
            g_free(text);
        }
        e_client_util_free_object_slist(objects);
    }

    void run(const std::string& line) {
        std::istringstream words(line);
        std::string command, name, argument;
        words >> command >> name >> std::ws;
        std::getline(words, argument);
        error = nullptr;
        if (command == "new")
            make(name, true);
        else if (command == "readonly")
            make(name, false);
        else if (command == "disable")
            disable(name);
        else if (command == "add")
            add(name, argument);
        else if (command == "remove")
            remove(name, argument);
        else if (command == "get")
            get(name, argument);
        else if (command == "list")
            list(name);
        else
            throw std::runtime_error("unknown command " + command);
    }
};

} // namespace

int main() {
    Client client;
    if (client.registry == nullptr) {
        (void)std::fprintf(stderr, "%s\n", client.error->message);
        return 1;
    }
    constexpr int commands = 3;
    std::FILE* const input = ::fdopen(commands, "r");
    char line[4096];
    for (int count = 1; input != nullptr && std::fgets(line, sizeof line, input) != nullptr;
         ++count) {
        try {
            client.run(line);
        } catch (const std::exception& failure) {
            std::printf("error %s\n", failure.what());
        }
        std::printf("answered %d\n", count);
        (void)std::fflush(stdout);
    }
    return 0;
}
