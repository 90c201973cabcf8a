// Stands in for the desktop's index on a session bus: files that a test made up, behind the real SPARQL service.
//
// made_index_service NAME PROGRESS, with a line for each thing on standard input: the address of a file, its bytes, and
// the sides of its picture (0 where the index does not know them), apart by tabs. Says "ready" when it answers. With
// the address of a folder in LUMIVANE_GROWING_FOLDER, more and more files come to it, although it says that it is idle.
#include <libtracker-sparql/tracker-sparql.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

constexpr const char* kMiner =
    "<node><interface name='org.freedesktop.Tracker3.Miner'>"
    "<method name='GetProgress'><arg type='d' direction='out'/></method>"
    "<method name='GetStatus'><arg type='s' direction='out'/></method>"
    "</interface></node>";

void must(bool done, const GError* error) {
  if (done) return;
  std::fprintf(stderr, "made_index_service: %s\n", error == nullptr ? "failed" : error->message);
  std::exit(1);
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result += '"';
}

std::string statementsOf(int number, const std::string& line) {
  std::istringstream words(line);
  std::string uri, bytes, width, height;
  std::getline(words, uri, '\t');
  std::getline(words, bytes, '\t');
  std::getline(words, width, '\t');
  std::getline(words, height, '\t');
  const std::string file = "<urn:file:" + std::to_string(number) + ">";
  std::string result = "GRAPH tracker:FileSystem { " + file + " a nfo:FileDataObject ; nie:url " +
                       quoted(uri) + " ; nfo:fileSize " + bytes + " } ";
  if (width != "0") {
    result += "GRAPH tracker:Pictures { <urn:picture:" + std::to_string(number) +
              "> a nfo:Image ; nie:isStoredAs " + file + " ; nfo:width " + width + " ; nfo:height " + height +
              " } ";
  }
  return result;
}

void fill(TrackerSparqlConnection* store) {
  constexpr int kAtOnce = 500;
  GError* error = nullptr;
  std::string statements;
  int number = 0;
  const auto insert = [&] {
    if (!statements.empty())
      tracker_sparql_connection_update(store, ("INSERT DATA { " + statements + "}").c_str(), nullptr, &error);
    must(error == nullptr, error);
    statements.clear();
  };
  for (std::string line; std::getline(std::cin, line);) {
    statements += statementsOf(number++, line);
    if (number % kAtOnce == 0) insert();
  }
  insert();
}

struct Miner {
  double progress = 0;
  bool grows = false;  // another file whenever it is asked
  TrackerSparqlConnection* store = nullptr;
  int files = 0;
};

void answer(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant*,
            GDBusMethodInvocation* call, gpointer data) {
  auto* const miner = static_cast<Miner*>(data);
  if (miner->grows) {
    const std::string number = std::to_string(miner->files++);
    const std::string uri = g_getenv("LUMIVANE_GROWING_FOLDER") + ("/" + number + ".jpg");
    const std::string file = "GRAPH tracker:FileSystem { <urn:grown:" + number +
                             "> a nfo:FileDataObject ; nie:url " + quoted(uri) + " }";
    tracker_sparql_connection_update(miner->store, ("INSERT DATA { " + file + " }").c_str(), nullptr,
                                     nullptr);
  }
  const bool askedForProgress = std::string(method) == "GetProgress";
  g_dbus_method_invocation_return_value(
      call, askedForProgress ? g_variant_new("(d)", miner->progress)
                             : g_variant_new("(s)", miner->progress >= 1 ? "Idle" : "Processing"));
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  Miner miner;
  miner.progress = std::strtod(words[2], nullptr);
  miner.grows = g_getenv("LUMIVANE_GROWING_FOLDER") != nullptr;
  GError* error = nullptr;
  TrackerSparqlConnection* const store = tracker_sparql_connection_new(
      TRACKER_SPARQL_CONNECTION_FLAGS_NONE, nullptr, tracker_sparql_get_ontology_nepomuk(), nullptr, &error);
  must(store != nullptr, error);
  fill(store);
  miner.store = store;
  GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
  must(bus != nullptr, error);
  must(tracker_endpoint_dbus_new(store, bus, nullptr, nullptr, &error) != nullptr, error);
  GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(kMiner, &error);
  must(node != nullptr, error);
  const GDBusInterfaceVTable table{answer, nullptr, nullptr, {}};
  must(g_dbus_connection_register_object(bus, "/org/freedesktop/Tracker3/Miner/Files", node->interfaces[0],
                                         &table, &miner, nullptr, &error) != 0,
       error);
  g_bus_own_name_on_connection(
      bus, words[1], G_BUS_NAME_OWNER_FLAGS_NONE,
      [](GDBusConnection*, const char*, gpointer) {
        std::puts("ready");
        std::fflush(stdout);
      },
      nullptr, nullptr, nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
