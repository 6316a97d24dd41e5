#include "host_options.h"

void buildHostOptions(CLI::App &app, HostOptions &options) {
    app.add_option("--module", options.modulePath,
                   "Path of the module library (default: beside this program, then in "
                   "../lib/battery_host)");
    app.add_option("--scenario", options.scenario,
                   "Emulated notebook: a built-in name, a JSON file, or 'list'");
    app.add_flag("--this-machine", options.thisMachine,
                 "Read this computer's batteries instead of the emulated notebook's");
    app.add_flag("--list", options.list, "List diagnostics, tests and batteries");
    app.add_flag("--version", options.version, "Print the host's and the module's versions");
    app.add_flag("--json", options.json, "Print one JSON report instead of text");
    app.add_flag("--keys", options.rawKeys, "Show the module's message keys, not English");
    app.add_flag("-y,--yes", options.yes,
                 "Answer every prompt by doing what it asks, without asking");
    app.add_option("--duration", options.duration, "Minutes of an extended test (5 to 20)");
    app.add_flag("--hold-above-charge", options.holdAboveCharge,
                 "Discharge test: keep measuring while the charge is above 93 percent");
    app.add_option("--run", options.runIds, "Run a test by identifier, e.g. 12.1.1");
    app.add_option("--time-scale", options.timeScale,
                   "Emulated time runs this many times faster than the wall clock "
                   "(0.001 to 100000)");
    run_outputs::addOptions(app, options.outputs);
    app.add_option("devices", options.devices, "Batteries to test (default: all)");
    app.set_help_flag("-h,--help", "Show this help and the module's help text");
}
