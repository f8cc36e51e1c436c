#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <libecal/libecal.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

// Another program that uses the desktop's calendars, for putting events there and for looking at
// what became of them. One command a line on standard input, one line "ok" or "error TEXT" after
// what each prints:
//   new NAME            makes a calendar of that name; its id is NAME
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

    void make(const std::string& name) {
        ESource* source = e_source_new_with_uid(name.c_str(), nullptr, &error);
        if (source == nullptr) fail(error);
        e_source_set_display_name(source, name.c_str());
        e_source_set_parent(source, "local-stub");
        e_source_backend_set_backend_name(
            E_SOURCE_BACKEND(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR)), "local");
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
            EClient* const made = e_cal_client_connect_sync(
                source(name), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, static_cast<guint32>(-1), nullptr,
                &error);
            if (made == nullptr) fail(error);
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
            std::fputs(text, stdout);
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
            std::fputs(text, stdout);
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
            make(name);
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
        std::fprintf(stderr, "%s\n", client.error->message);
        return 1;
    }
    for (std::string line; std::getline(std::cin, line);) {
        try {
            client.run(line);
            std::puts("ok");
        } catch (const std::exception& failure) {
            std::printf("error %s\n", failure.what());
        }
        std::fflush(stdout);
    }
    return 0;
}
