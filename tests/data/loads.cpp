#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <sstream>

#include "data/load_keys.h"
#include "text/number.h"

using namespace tv;

namespace {

struct Load {
  CalcState state;
  LoadData data;
};

double random_number(std::mt19937_64& random) {
  const double mantissa = static_cast<double>(random()) / 1.8446744073709552e19;
  return mantissa * std::pow(10.0, static_cast<double>(random() % 40) - 20);
}

Load random_load(std::mt19937_64& random) {
  const std::string words[] = {"", ".308 Win.", " \"quoted\" ", "= [x] ; 'y'", "\u00E4\u20AC\u00A6", " b "};
  Load load;
  for (const LoadKey& key : load_keys()) {
    if (key.text) load.data.*key.text = words[random() % std::size(words)];
    if (key.state) load.state.*key.state = random_number(random);
    if (key.dim) load.state.dim.*key.dim = random_number(random);
    if (key.load) load.data.*key.load = random_number(random);
    if (key.dim_int) load.state.dim.*key.dim_int = static_cast<int>(random() % 3);
    if (key.state_int) load.state.*key.state_int = static_cast<int>(random() % 100) - 50;
    if (key.load_int) load.data.*key.load_int = static_cast<int>(random() % 9);
    if (key.state_flag) load.state.*key.state_flag = random() % 2;
    if (key.load_flag) load.data.*key.load_flag = random() % 2;
  }
  load.state.dim.TAIL = load.state.dim.tail_type != kFlatBase && random() % 2;
  load.data.commen = "first\nsecond; \"x\"";
  load.state.moly_factor = 0.4 + 0.6 * static_cast<double>(random() % 1000) / 1000;
  load.data.coefficients.resize(1 + random() % 5);
  for (Coefficient& row : load.data.coefficients) row = {random_number(random), random_number(random)};
  load.data.coefficients.back().velocity = 0;
  load.data.c1icao = load.data.coefficients.front().bc;
  return load;
}

SectionedFile written(const Load& load, SectionedFile file = {}) {
  write_load_keys(load.state, load.data, file);
  return file;
}

Load read(const SectionedFile& file) {
  Load load;
  EXPECT_TRUE(read_load_keys(file, load.state, load.data));
  return load;
}

// Every value by its key. Numbers in the general form differ if their doubles do.
std::string told(const Load& load) {
  std::string text = std::to_string(load.data.coefficients.size());
  for (const LoadKey& key : load_keys()) {
    text += "\n" + std::string(key.key) + " " + load_value_text(key, load.state, load.data);
  }
  return text;
}

constexpr const char* kSample =
    "[startup]\r\ncommen=one\xACtwo\r\n[metrics]\r\npattyp=.308 Win.\r\nbultyp=.308 , 147 , FMJ BT\r\n"
    "laflen= 24\r\npatlan= 2.8\r\nbullen= 1.13\r\nhullen= 2.015\r\nkalzug= .308\r\nbulgew= 147\r\nausinn= "
    "2\r\n"
    "mulbc1= .4\r\ntrvel1= 800\r\nmulbc2= .38\r\ntrvel2= 500\r\nmulbc3=0\r\nmulbc4= .3\r\nmaxzul= 415\r\n"
    "[chargedata]\r\npulver=Example R-04\r\npowwht= 46.297075059\r\nanfdru= 25000000\r\nprimer=LR\r\n";

Load sample() { return read(SectionedFile(kSample)); }

}  // namespace

TEST(Loads, ReadBackToTheLastBit) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 100; ++i) {
    const Load load = random_load(random);
    const SectionedFile file = written(load);
    EXPECT_EQ(told(read(file)), told(load));
    EXPECT_EQ(written(read(file), file).bytes(), file.bytes());  // nothing to change: not a byte changes
    EXPECT_EQ(told(read(written(load, written(random_load(random), SectionedFile(kSample))))), told(load));
  }
}

template <class... T>
std::array<double*, sizeof...(T)> pointers(T&... numbers) {
  return {&numbers...};
}

TEST(Loads, HoldEachNumberUnderItsKey) {
  Load load;
  CalcState& s = load.state;
  CartridgeDimensions& d = s.dim;
  LoadData& l = load.data;
  std::istringstream names(
      "laflen patlan bullen hullen kalzug bulgew sebert volful wirkqu brennr gesweg conlen condia "
      "condid buldia sdepth fripas molyco c1icao maxzul l1_in l2_in Ri_in R1_in P1_in P2_in H1_in H2_in "
      "caswht ZD_in ZB_in FD_in FB_in limiz1 abkof0 abkof1 exwarm kappax powden prodeg powwht anfdru "
      "anfpul bulkdn ");
  const auto members =
      pointers(d.Llen, d.Plen, d.Glen, d.Hlen, d.Zkal, d.Bwg, d.sebf, d.Volf, d.qfq, d.Veff, d.Wob,
               d.tail_len, d.tail_dia_small, d.tail_dia_large, d.buldin, d.Bsd, s.frictionPress,
               s.moly_factor, l.c1icao, d.zul_P, l.l1_in, l.l2_in, l.Ri_in, l.R1_in, l.P1_in, l.P2_in,
               l.H1_in, l.H2_in, l.caswht, l.ZD_in, l.ZB_in, l.FD_in, l.FB_in, s.Limz1, s.Ba0, s.Ba1, s.Exw,
               s.Kap, s.Pdens, s.PDko, s.chargeGr, s.start_pressure, l.anfpul, s.bulkdn);
  double n = 0;
  for (double* member : members) *member = ++n;
  const SectionedFile file = written(load);
  n = 0;
  for (std::string key; names >> key;)
    EXPECT_EQ(read_number(file.get(load_key(key)->section, key)), ++n) << key;
  EXPECT_EQ(n, members.size());
}

TEST(Loads, HaveTheirForm) {
  Load load;
  load.state.dim.Hlen = 0.308;
  load.state.dim.Bsd = -1e-6;
  load.state.frictionOn = true;
  load.data.commen = std::string(250, 'c') + "\r\n" + std::string(10, 'd');
  load.data.coefficients = {{0.4, 800}, {0.38, 0}};
  const std::string bytes = written(load).bytes();
  for (const char* line : {"hullen= 0.308\r\n", "sdepth=-1E-06\r\n", "friyes=-1\r\n", "wirktr=0\r\n",
                           "trvel2= 0\r\n", "mulbc3=0\r\n", "trvel4=0\r\n", "mulbc5=0\r\n", "pulver=\r\n"}) {
    EXPECT_NE(bytes.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(bytes.find("[startup]\r\ncommen=" + std::string(250, 'c') + "\xAC" + "dddd\r\n"), 0u);
}

TEST(Loads, MissingValuesHaveTheirDefaults) {
  Load load = sample();
  load.state.powtmp = 15;
  load.data.gfunc = "G7";
  const std::string bytes = "[metrics]\nhullen=2\nbullen=1\npatlan=2.5\nkalzug=.308\nmolyco=-.3\n";
  ASSERT_TRUE(read_load_keys(SectionedFile(bytes), load.state, load.data));
  EXPECT_EQ(load.state.dim.Bsd, 0.5);
  EXPECT_EQ(load.state.dim.buldin, 0.308);
  EXPECT_EQ(load.state.moly_factor, 0.66);
  EXPECT_EQ(load.data.coefficients.at(0).bc, 4.5);
  EXPECT_EQ(load.state.powtmp, 15);
  EXPECT_EQ(load.data.gfunc, "G7");
  EXPECT_EQ(load.state.chargeGr, 0);
  EXPECT_FALSE(load.data.start_press_set);
  EXPECT_EQ(load.data.commen, "");
  EXPECT_EQ(read(SectionedFile("[metrics]\nmolyco=-.7")).state.moly_factor, 0.7);
  EXPECT_EQ(read(SectionedFile("[metrics]\nc1icao=.5\nmulbc2=.4")).data.coefficients[0].bc, 0.5);
}

TEST(Loads, CoefficientsEndAtTheFirstThatIsMissing) {
  const Load load = sample();
  ASSERT_EQ(load.data.coefficients.size(), 2u);
  EXPECT_EQ(load.data.coefficients[0].velocity, 800);
  EXPECT_EQ(load.data.coefficients[1].bc, 0.38);
  EXPECT_EQ(load.data.coefficients[1].velocity, 0);
  EXPECT_EQ(load.data.c1icao, 0.4);
}

TEST(Loads, WhatIsNotUnderstoodIsTold) {
  const struct {
    const char* line;
    double value;
    bool told;
  } cases[] = {{"laflen=23,5", 23.5, false}, {"laflen= ,5 ", 0.5, false}, {"laflen=1E1", 10, false},
               {"laflen=", 0, false},        {"laflen=38x", 38, true},    {"laflen=1,234.5", 1, true},
               {"laflen=1,2,3", 1, true},    {"laflen=abc", 0, true},     {"laflen=1E999", 0, true},
               {"laflen=nan", 0, true},      {"laflen=24 in", 24, true},  {"ausinn= 2", 2, false},
               {"ausinn=7", 0, true},        {"ausinn=-1", 0, true},      {"ausinn=1,5", 0, true},
               {"Shape=2.5", 2, true},       {"Shape=1E12", 0, true},     {"friyes=-1", -1, false},
               {"friyes=True", -1, false},   {"friyes=yes", 0, true},     {"pattyp=38x", 0, false}};
  for (const auto& c : cases) {
    const std::string line = c.line, name = line.substr(0, line.find('='));
    const LoadKey& key = *load_key(name);
    Load load, design;
    const SectionedFile file("[metrics]\n" + line + "\n");
    const auto not_understood = read_load_keys(file, load.state, load.data);
    ASSERT_TRUE(not_understood);
    EXPECT_EQ(*not_understood, c.told ? KeyList{key.key} : KeyList{}) << line;
    EXPECT_EQ(read_design_data(file, design.state, design.data), *not_understood) << line;
    for (const Load* read : {&load, &design}) {
      const std::string text = load_value_text(key, read->state, read->data);
      EXPECT_EQ(read_number(text), key.text ? 38 : c.value) << line;
    }
    // What is told of a file is refused when typed.
    const bool typed = set_load_value(key, line.substr(name.size() + 1), load.state, load.data);
    EXPECT_EQ(typed, !c.told && !line.ends_with('=')) << line;
  }
  CalcState state;
  Options options;
  EXPECT_EQ(read_load_options(SectionedFile("[metrics]\nmaxtab=300 MPa\n[recoil]\ngunmas=3,5\nguname=x\n"),
                              state, options),
            KeyList{"maxtab"});
  EXPECT_EQ(options.gunmas, 3.5);
}

TEST(Loads, WhatIsNoLoadChangesNothing) {
  for (const char* bytes :
       {"", "rubbish\0\1\2", "[startup]\ncommen=x\n", "[recoil]\ngunmas=3\n", "metrics\nlaflen=3\n"}) {
    Load load = sample();
    EXPECT_FALSE(read_load_keys(SectionedFile(bytes), load.state, load.data)) << bytes;
    EXPECT_EQ(told(load), told(sample()));
  }
}

TEST(Loads, TypedCoefficientsKeepTheirOrder) {
  Load load = sample();
  const auto type = [&](const char* key, const char* text) {
    EXPECT_TRUE(set_load_value(*load_key(key), text, load.state, load.data));
    return load.data.coefficients.size();
  };
  EXPECT_EQ(type("c1icao", ".35"), 2u);
  EXPECT_EQ(load.data.coefficients[0].bc, 0.35);
  EXPECT_EQ(type("MULBC3", ",2"), 3u);
  EXPECT_EQ(type("mulbc2", "0"), 1u);
}

TEST(Loads, TargetPressureFollowsTheCartridge) {
  const struct {
    double maxzul;
    const char* file;
    double maxtab;
  } cases[] = {
      {400, "", 350}, {0, "", 123}, {400, "maxtab= 300", 300}, {400, "maxtab=8", 350}, {0, "maxtab=8", 8}};
  for (const auto& c : cases) {
    Options options;
    options.maxtab = 123;
    CalcState state;
    state.dim.zul_P = c.maxzul;
    read_load_options(SectionedFile(std::string("[metrics]\n") + c.file + "\n"), state, options);
    EXPECT_EQ(options.maxtab, c.maxtab) << c.maxzul << c.file;
  }
}

TEST(Loads, PreviewTellsTheLoad) {
  EXPECT_EQ(load_preview(SectionedFile(kSample)),
            ".308 Win. -- 147grs .308 , 147 , FMJ BT\nExample R-04 : 46.3 grs -- LR\none\ntwo");
}

TEST(Loads, TransferFileHoldsTheShot) {
  Load load = sample();
  load.data.gfunc.clear();
  Options options;
  SectionedFile file("[transfer]\r\nbfile=x\r\nmulbc3= 9\r\n");
  write_transfer(load.state, load.data, options, "899", file);
  EXPECT_EQ(
      file.bytes(),
      "[transfer]\r\nbfile=x\r\nmulbc3= 0\r\nbtype=.308 , 147 , FMJ BT\r\nptype=.308 Win.\r\npgewi= 147\r\n"
      "gfunc=G1\r\nbcica= 0.4\r\nmulbc1= 0.4\r\ntrvel1= 800\r\nmulbc2= 0.38\r\ntrvel2= 0\r\ntrvel3=0\r\n"
      "mulbc4=0\r\ntrvel4=0\r\nmulbc5=0\r\nvnull=899\r\nisneu=-1\r\npdiam= 0.308\r\ncnlen= 0\r\ncndia= 0\r\n"
      "cndid= 0\r\nbllen= 1.13\r\ntwilen= 12\r\nhosin= 1.8\r\nasinn= 2\r\nclidst= 0\r\nmoacli= 0.25\r\n");
}
