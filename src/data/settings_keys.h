// The program's options: their keys in the settings file, types and defaults, in one table.
#pragma once

#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/sectioned_file.h"

namespace tv {

struct Options {
  // constants
  std::string pri_font_nam = "Arial";
  double pri_font_siz = 8;
  std::string pict_font_nam = "Arial";
  // tiphelp
  bool toltip = true;
  double tiptim = 0.5;   // s
  double tipwid = 3000;  // twips
  // startup
  std::string lanfile;
  std::string labfil, volfil, profil, ibulfil, gunfil, bpwfil, omtfil, Picfil,
      vivfil;           // file names, less extension
  bool labchg = false;  // the load differs from its file
  int filcnt = 8;       // length of the recent list
  int graf_x = 0, graf_y = 3;
  bool metyes = true;  // metric display
  int grftyp = 6;      // kind of the standard diagram
  int schrit = 0;
  double ldstep = 1;  // percent
  bool ldweight = false, ldperc = false;
  int batols = 5;  // percent
  bool primeryes = false, mpayes = true;
  bool autocalc = false;  // calculate after each accepted entry
  bool pcolor = true, maxshw = true, actshw = true;
  int gbrlen = 0;
  double srchtl = 0.003;  // inch
  bool atiles = true, resize = false, symbol = true;
  double wisizx = 12084, wisizy = 8040;  // twips
  bool sortvol = false;
  std::string scrfon = "Microsoft Sans Serif";
  double scrsiz = 8;
  bool scrbld = true, scrita = false;
  std::string tabfon = " ????? ";
  double tabsiz = 8, tabbld = -1;
  bool intro_off = false, excel_yes = true, accept = false, nowarn = false, pri_graph1page = false;
  double pritopcm = 1.5, prileftcm = 2.0, prirightcm = 1.5, pribottomcm = 1.5;
  std::string pri_paper;       // "A4", "Letter"; empty: the usual one of the country
  bool pri_landscape = false;  // tables that are too wide for upright paper turn it anyway
  int primertype = 0;
  int Bnam = 0, HVolDat = 0;              // highlights of the two list labels
  std::string txtdir, picdir, tabdir;     // folders of the last export as text, picture, spreadsheet
  std::string volused, bulused, proused;  // names of the records picked last, the last one first, by ";"
  std::string form1l, form1t, form1w, form1h, form3l, form3t, form4l, form4t, form9l,
      form9t;  // window places, twips
  std::string form5l, form5t, form5h, form5w, form7l, form7t, form7w, form7h;
  bool form1max = false;          // the frame fills its screen
  int deskleft = 0, desktop = 0;  // pixels: width of the entries, height of the upper one; 0: as they like
  std::string desktab, folds;     // the tab in front; the groups that are open, "Form3.fold_case;"
  int look = 0;                   // 0 as the desktop's, 1 light, 2 dark
  // metrics
  double twistlen = 12;  // inch
  double maxtab = 350;   // MPa, target pressure of the powder table
  double veltab = 500;   // m/s, its target velocity
  double bamaxt = 4, bamint = 0.3;
  double lratio = 100, lv_min = 90, hratio = 100;  // percent
  double lod2nd = 0.85;
  // recoil
  double gunmas = 4, scopew = 0.5;  // kg
  double gunhos = 1.8;              // inch
  std::string guname, guncom;
  int gclidst = 0;
  double gmoacli = 0.25;
  // referenz
  std::string reffil;
  // measured: standard deviations that the range of a prediction is drawn with
  double spr_Ba0 = 2, spr_volume = 1, spr_bullet = 0.2, spr_start = 10;  // percent
  double spr_charge = 0.1;                                               // grains
  double spr_seating = 0.1, spr_barrel = 1;                              // mm
};

enum class OptionForm {
  text,
  path,
  real,
  whole,
  flag,
  true_false
};  // flags are "-1" and "0", others "True" and "False"

struct OptionKey {
  std::string_view key, section;
  OptionForm form;
  std::string Options::*text = nullptr;
  double Options::*real = nullptr;
  int Options::*whole = nullptr;
  bool Options::*flag = nullptr;
  // A number beyond these makes no sense and reads as the default.
  double least = -std::numeric_limits<double>::infinity();
  double most = std::numeric_limits<double>::infinity();
};
// In the order in which they are written.
std::span<const OptionKey> option_keys();

// Reads every option that the file holds and that makes sense; the others keep their values. `constants`
// falls back to `konstanten`, `metrics` to `abmessungen`. Paths come back with '/'. A design size of the
// window below 1000 twips is 0: the window keeps its own. True if the print size was found in `konstanten`
// only; the caller then writes it to `constants` at once.
bool read_options(const SectionedFile& file, Options& options);
// One of them; the option keeps its value if the file has none.
void read_option(const OptionKey& key, const SectionedFile& file, Options& options);
// Sets every option in the file at hand (it is written by the caller, once).
void write_options(const Options& options, SectionedFile& file);
void write_option(const OptionKey& key, const Options& options, SectionedFile& file);

// True if the text begins with t, T or a number other than 0.
bool read_flag(std::string_view text);

// The data root: a folder that keeps its own files (the program's, writable, with ternofw.set or with lan/ and
// data/; above a bin also with both); else the folder of the program's name in the user's documents, then in
// the system's shared data folders, that holds ternofw.set; else the program's own folder, or, where that is called bin or is not
// writable, a folder in the user's documents which the caller makes. A pure function of what it is given and
// of the files that stand there.
struct DataRoots {
  std::string root;  // with its closing '/'; settings and the user's own files
  std::string
      delivered;  // with its closing '/'; where lan/ and data/ are read from when missing under the root
};
struct PlaceHints {
  std::string program_folder;            // where the program lies
  std::string documents;                 // the user's documents folder
  std::vector<std::string> shared_data;  // the system's shared data folders, in their order
  std::string build_share;               // the delivered files of a build tree; empty when installed
  std::string root = {};                 // the data root itself, given by the user; empty: to be found
};
DataRoots find_data_root(const PlaceHints& hints);

}  // namespace tv
