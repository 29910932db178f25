// The command line: its common options, its commands, and the exit code of each.
#include <CLI/CLI.hpp>

#include "cli/command.h"
#include "screens/all.h"

namespace tv {
namespace {

constexpr CliCommand (*kCommands[])(CLI::App&) = {bind_shot, bind_load_table, bind_powder_table, bind_records,
                                                  bind_keys, bind_play,       bind_measured,     bind_fit,
                                                  bind_band, bind_crosscheck};

void add_common_options(CLI::App& app, CommonArgs& args) {
  app.set_version_flag("--version", std::string(kProgramName) + " " + kVersion);
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("--root", args.root, "data root: settings and the user's own files");
  app.add_option("--language", args.language, "of messages and texts")
      ->check(CLI::IsMember({"german", "english", "french", "russian"}));
  app.add_flag("--defaults", args.defaults, "ignore the user's settings");
  app.add_flag("--yes", args.yes, "answer questions with Yes");
}

int run_command_line(const std::vector<CliCommand>& commands, const CommonArgs& args,
                     const Console& console) {
  CliUser user(console.err);
  Session session(user, the_program());
  for (const CliCommand& command : commands)
    if (command.app->parsed()) {
      begin_session(session, user, args, command.writes_files);
      return command.run(session, user, console);
    }
  return kWrongUsage;
}

// An answer that did not arrive is none.
int checked(int exit_code, const Console& console) {
  if (console.out.flush()) return exit_code;
  console.err << "ternovale-cli: standard output could not be written\n";
  return kFileTrouble;
}

}  // namespace

int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
  const Console console{in, out, err};
  CommonArgs args;
  CLI::App app{"Ternovale: interior ballistics from the command line", "ternovale-cli"};
  add_common_options(app, args);
  std::vector<CliCommand> commands;
  for (const auto bind : kCommands) commands.push_back(bind(app));
  try {
    app.parse(argc, argv);
    return checked(run_command_line(commands, args, console), console);
  } catch (const CLI::ParseError& error) {
    return checked(app.exit(error, out, err) == 0 ? kDone : kWrongUsage, console);
  } catch (const Stop& stop) {
    if (!stop.message.empty()) err << "ternovale-cli: " << stop.message << "\n";
    return stop.exit_code;
  }
}

}  // namespace tv
