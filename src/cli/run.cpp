// The command line: options and commands, and the exit code of each.
#include <CLI/CLI.hpp>

#include "cli/command.h"
#include "screens/all.h"

namespace tv {
namespace {

void add_load_options(CLI::App& command, LoadArgs& args, const std::vector<std::string>& formats) {
  command.add_option("LOAD", args.load, "load file, or a settings file")->required();
  command.add_option("--set", args.sets, "KEY=VALUE: change a key of the load, as if it was typed")
      ->allow_extra_args(false);
  command.add_option("--step", args.step, "step of the calculation")
      ->check(CLI::IsMember({"normal", "fine", "coarse"}));
  command.add_option("--units", args.units)->check(CLI::IsMember({"metric", "imperial"}));
  command.add_option("--pressure", args.pressure, "unit of pressures")->check(CLI::IsMember({"mpa", "bar"}));
  command.add_option("--format", args.format)->check(CLI::IsMember(formats))->capture_default_str();
  command.add_option("--output", args.output, "write the answer into this file");
}

struct Arguments {
  CommonArgs common;
  LoadArgs shot;
  LoadTableArgs load_table;
  PowderTableArgs powder_table;
  std::string records, records_format = "text", records_output;
  std::string script;
};

struct Commands {
  CLI::App* shot;
  CLI::App* load_table;
  CLI::App* powder_table;
  CLI::App* records;
  CLI::App* play;
};

void add_common_options(CLI::App& app, CommonArgs& args) {
  app.set_version_flag("--version", std::string(kProgramName) + " " + kVersion);
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("--root", args.root, "data root: settings and the user's own files");
  app.add_option("--language", args.language, "of messages and texts")
      ->check(CLI::IsMember({"german", "english", "french", "russian"}));
  app.add_flag("--yes", args.yes, "answer questions with Yes");
}

CLI::App* add_shot(CLI::App& app, LoadArgs& args) {
  CLI::App* command = app.add_subcommand("shot", "calculate one shot");
  add_load_options(*command, args, {"text", "json", "csv"});
  command->add_flag("--curve", args.curve, "with the points of the shot");
  return command;
}

CLI::App* add_load_table(CLI::App& app, LoadTableArgs& args) {
  CLI::App* command = app.add_subcommand("load-table", "the load with less and more powder");
  add_load_options(*command, args.load, {"text", "json", "csv", "xlsx"});
  auto* percent = command->add_option("--step-percent", args.step_percent)->check(CLI::Range(0.1, 9.0));
  command->add_option("--step-grains", args.step_grains)->check(CLI::Range(0.1, 5.0))->excludes(percent);
  command->add_option("--ba-tolerance", args.ba_tolerance, "of the burn rate, percent")
      ->check(CLI::Range(1, 99));
  return command;
}

CLI::App* add_powder_table(CLI::App& app, PowderTableArgs& args) {
  CLI::App* command = app.add_subcommand("powder-table", "the powders of a file, each fitted to a target");
  add_load_options(*command, args.load, {"text", "json", "csv", "xlsx"});
  command->add_option("--powders", args.powders, "record file")->required();
  command->add_option("--strategy", args.strategy)->required()->check(CLI::Range(0, kStrategies - 1));
  command->add_option("--sort", args.sort, "column, by name or number");
  command->add_flag("--descending", args.descending);
  return command;
}

CLI::App* add_records(CLI::App& app, Arguments& args) {
  CLI::App* command = app.add_subcommand("records", "read a record file of any kind");
  command->add_option("FILE", args.records)->required();
  command->add_option("--format", args.records_format)->check(CLI::IsMember({"text", "json", "csv"}));
  command->add_option("--output", args.records_output, "write the answer into this file");
  return command;
}

CLI::App* add_play(CLI::App& app, std::string& script) {
  CLI::App* command = app.add_subcommand("play", "drive the screens by a script");
  command->add_option("SCRIPT", script, "its file; - for standard input")->required();
  return command;
}

int run_command_line(const Commands& commands, const Arguments& args, const Console& console) {
  CliUser user(console.err);
  Session session(user, the_program());
  begin_session(session, user, args.common, commands.play->parsed());
  if (commands.shot->parsed()) return shot_command(session, user, console, args.shot);
  if (commands.load_table->parsed()) return load_table_command(session, user, console, args.load_table);
  if (commands.powder_table->parsed()) return powder_table_command(session, user, console, args.powder_table);
  if (commands.records->parsed())
    return records_command(session, console, args.records, args.records_format, args.records_output);
  return play_command(session, user, console, args.script);
}

}  // namespace

int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
  Arguments args;
  CLI::App app{"Ternovale: interior ballistics from the command line", "ternovale-cli"};
  add_common_options(app, args.common);
  const Commands commands{add_shot(app, args.shot), add_load_table(app, args.load_table),
                          add_powder_table(app, args.powder_table), add_records(app, args),
                          add_play(app, args.script)};
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, out, err) == 0 ? kDone : kWrongUsage;
  }
  try {
    return run_command_line(commands, args, {in, out, err});
  } catch (const Stop& stop) {
    if (!stop.message.empty()) err << "ternovale-cli: " << stop.message << "\n";
    return stop.exit_code;
  }
}

}  // namespace tv
