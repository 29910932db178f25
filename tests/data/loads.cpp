#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "data/load_keys.h"
#include "text/number.h"

using namespace tv;

namespace {

struct Load {
  CalcState state;
  LoadData data;
};

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

double random_number(std::mt19937_64& random) {
  const double mantissa = static_cast<double>(random()) / 1.8446744073709552e19;
  return mantissa * std::pow(10.0, static_cast<double>(random() % 40) - 20);
}

Load random_load(std::mt19937_64& random) {
  Load load;
  for (const LoadKey& key : load_keys()) {
    const std::string words[] = {"",         ".308 Win.", " \"quoted\" ", "= [x] ; 'y'", "\u00E4\u20AC\u00A6",
                                 "  blanks "};
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

Load read(const std::string& bytes) { return read(SectionedFile(bytes)); }

// Every value, told apart by its key.
void expect_same(const Load& a, const Load& b) {
  EXPECT_EQ(a.state.dim.TAIL, b.state.dim.TAIL);
  for (const LoadKey& key : load_keys()) {
    const std::string name(key.key);
    if (key.state) {
      EXPECT_TRUE(same_bits(a.state.*key.state, b.state.*key.state)) << name;
    }
    if (key.dim) {
      EXPECT_TRUE(same_bits(a.state.dim.*key.dim, b.state.dim.*key.dim)) << name;
    }
    if (key.load) {
      EXPECT_TRUE(same_bits(a.data.*key.load, b.data.*key.load)) << name;
    }
    if (key.coefficient) continue;
    EXPECT_EQ(load_value_text(key, a.state, a.data), load_value_text(key, b.state, b.data)) << name;
  }
  ASSERT_EQ(a.data.coefficients.size(), b.data.coefficients.size());
  for (std::size_t i = 0; i < a.data.coefficients.size(); ++i) {
    EXPECT_TRUE(same_bits(a.data.coefficients[i].bc, b.data.coefficients[i].bc)) << i;
    EXPECT_TRUE(same_bits(a.data.coefficients[i].velocity, b.data.coefficients[i].velocity)) << i;
  }
}

const char* const kSample =
    "[startup]\r\ncommen=one\xACtwo\r\n[metrics]\r\npattyp=.308 Win.\r\nbultyp=.308 , 147 , FMJ BT\r\n"
    "laflen= 24\r\npatlan= 2.8\r\nbullen= 1.13\r\nhullen= 2.015\r\nkalzug= .308\r\nbulgew= 147\r\nausinn= "
    "2\r\n"
    "mulbc1= .4\r\ntrvel1= 800\r\nmulbc2= .38\r\ntrvel2= 500\r\nmulbc3=0\r\nmulbc4= .3\r\nmaxzul= 415\r\n"
    "[chargedata]\r\npulver=Example R-04\r\npowwht= 46.297075059\r\nanfdru= 25000000\r\nprimer=LR\r\n";

}  // namespace

TEST(Loads, ReadBackToTheLastBit) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 200; ++i) {
    const Load load = random_load(random);
    const SectionedFile file = written(load);
    expect_same(load, read(file));
    EXPECT_EQ(written(read(file), file).bytes(), file.bytes());  // nothing to change: not a byte changes
    expect_same(load, read(written(load, written(random_load(random), SectionedFile(kSample)))));
  }
}

TEST(Loads, HaveTheirForm) {
  Load load;
  load.state.dim.Llen = 24;
  load.state.dim.Hlen = 0.308;
  load.state.dim.Bsd = -1e-6;
  load.state.frictionOn = true;
  load.data.commen = std::string(250, 'c') + "\r\n" + std::string(10, 'd');
  load.data.coefficients = {{0.4, 800}, {0.38, 0}};
  const std::string bytes = written(load).bytes();
  for (const char* line :
       {"[metrics]\r\n", "laflen= 24\r\n", "hullen= 0.308\r\n", "sdepth=-1E-06\r\n", "friyes=-1\r\n",
        "wirktr=0\r\n", "powtmp= 21\r\n", "mulbc1= 0.4\r\n", "trvel1= 800\r\n", "trvel2= 0\r\n",
        "mulbc3=0\r\n", "trvel4=0\r\n", "mulbc5=0\r\n", "pulver=\r\n"}) {
    EXPECT_NE(bytes.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(bytes.find("[startup]\r\ncommen=" + std::string(250, 'c') + "\xAC" + "dddd\r\n"), 0u);
}

TEST(Loads, MissingValuesHaveTheirDefaults) {
  Load load;
  load.state.powtmp = 15;
  load.state.chargeGr = 50;
  load.state.frictionOn = true;
  load.data.start_press_set = true;
  load.data.commen = "old";
  load.data.gfunc = "G7";
  const std::string bytes = "[metrics]\nhullen=2\nbullen=1\npatlan=2.5\nkalzug=.308\nmolyco=-.3\nmolydo=1\n";
  ASSERT_TRUE(read_load_keys(SectionedFile(bytes), load.state, load.data));
  EXPECT_EQ(load.state.dim.Bsd, 0.5);
  EXPECT_EQ(load.state.dim.buldin, 0.308);
  EXPECT_EQ(load.state.moly_factor, 0.66);
  EXPECT_TRUE(load.data.fproof);
  EXPECT_EQ(load.data.c1icao, 4.5);
  ASSERT_EQ(load.data.coefficients.size(), 1u);
  EXPECT_EQ(load.data.coefficients[0].bc, 4.5);
  EXPECT_EQ(load.state.powtmp, 15);
  EXPECT_EQ(load.state.chargeGr, 0);
  EXPECT_FALSE(load.state.frictionOn);
  EXPECT_FALSE(load.data.start_press_set);
  EXPECT_EQ(load.data.commen, "");
  EXPECT_EQ(load.data.gfunc, "G7");

  EXPECT_EQ(read("[metrics]\nbuldia=0\nkalzug=.3\nmolyco=-.7\nc1icao=.5").state.dim.buldin, 0);
  EXPECT_EQ(read("[metrics]\nmolyco=-.7").state.moly_factor, 0.7);
  EXPECT_EQ(read("[metrics]\nc1icao=.5\nmulbc2=.4").data.coefficients[0].bc, 0.5);
  EXPECT_EQ(read("[metrics]\nausinn=1E99\nlaflen=1E999\nbulgew=12,5").state.dim.Llen, 0);
}

TEST(Loads, CoefficientsEndAtTheFirstThatIsMissing) {
  const Load load = read(kSample);
  ASSERT_EQ(load.data.coefficients.size(), 2u);
  EXPECT_EQ(load.data.coefficients[0].velocity, 800);
  EXPECT_EQ(load.data.coefficients[1].bc, 0.38);
  EXPECT_EQ(load.data.coefficients[1].velocity, 0);
  EXPECT_EQ(load.data.c1icao, 0.4);
  EXPECT_TRUE(load.state.dim.TAIL);
  EXPECT_TRUE(load.data.start_press_set);
  EXPECT_EQ(load.data.commen, "one\ntwo");
}

TEST(Loads, OfOlderVersionsReadAlike) {
  std::string former = kSample;
  former.replace(former.find("[metrics]"), 9, "[abmessungen]");
  former.replace(former.find("[chargedata]"), 12, "[Treibladung]");
  expect_same(read(kSample), read(former));

  // A value that the user emptied does not come back from the former section.
  Load load = read(former);
  load.data.pulver.clear();
  const SectionedFile file = written(load, SectionedFile(former));
  EXPECT_EQ(file.get("treibladung", "pulver"), "");
  expect_same(load, read(file));
}

TEST(Loads, WhatIsNoLoadChangesNothing) {
  for (const char* bytes :
       {"", "rubbish\0\1\2", "[startup]\ncommen=x\n", "[recoil]\ngunmas=3\n", "metrics\nlaflen=3\n"}) {
    Load load = read(kSample);
    EXPECT_FALSE(read_load_keys(SectionedFile(bytes), load.state, load.data)) << bytes;
    expect_same(load, read(kSample));
  }
  // Cut anywhere a load reads as what is left of it.
  const std::string whole = kSample;
  for (std::size_t cut = whole.find("[metrics]") + 9; cut < whole.size(); ++cut) {
    const Load load = read(whole.substr(0, cut));
    EXPECT_TRUE(whole.find(load.data.pattyp) != std::string::npos);
  }
}

TEST(Loads, DesignDataChangesOnlyWhatItHolds) {
  Load load = read(kSample);
  const SectionedFile design(
      "[metrics]\nhullen=3\nbultyp=new\npattyp=\nausinn=0\nmulbc1=.5\ntrvel1=700\nmulbc2=.45\n"
      "[chargedata]\npowwht=99\nabkof0=9\n[startup]\ncommen=new\n");
  read_design_data(design, load.state, load.data);
  Load wanted = read(kSample);
  wanted.state.dim.Hlen = 3;
  wanted.state.dim.tail_type = 0;
  wanted.state.dim.TAIL = false;
  wanted.data.bultyp = "new";
  wanted.data.coefficients = {{0.5, 700}, {0.45, 0}};
  wanted.data.c1icao = 0.5;
  expect_same(load, wanted);
}

TEST(Loads, ValuesAreTypedByTheirKeys) {
  Load load = read(kSample);
  const auto type = [&](const char* key, const char* text) {
    const LoadKey* found = load_key(key);
    return found && set_load_value(*found, text, load.state, load.data);
  };
  EXPECT_TRUE(type("POWWHT", " 45,5 "));
  EXPECT_EQ(load.state.chargeGr, 45.5);
  for (const char* bad : {"", "x", "1x", "1e999", "nan", "inf", "1.2.3"})
    EXPECT_FALSE(type("powwht", bad)) << bad;
  EXPECT_EQ(load.state.chargeGr, 45.5);
  EXPECT_FALSE(type("nokey", "1"));
  EXPECT_TRUE(type("ausinn", "0"));
  EXPECT_TRUE(type("friyes", "-1"));
  EXPECT_TRUE(load.state.frictionOn);
  EXPECT_TRUE(type("c1icao", ".35"));
  EXPECT_EQ(load.data.coefficients[0].bc, 0.35);
  EXPECT_TRUE(type("mulbc3", ".2"));
  EXPECT_EQ(load.data.coefficients.size(), 3u);
  EXPECT_TRUE(type("mulbc2", "0"));
  EXPECT_EQ(load.data.coefficients.size(), 1u);
  EXPECT_TRUE(type("pulver", "Example S-09"));
  EXPECT_EQ(load_value_text(*load_key("pulver"), load.state, load.data), "Example S-09");
  EXPECT_EQ(load_value_text(*load_key("powwht"), load.state, load.data), "45.5");
  EXPECT_EQ(load_value_text(*load_key("molydo"), load.state, load.data), "0");
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
    read_load_options(SectionedFile(std::string("[metrics]\n") + c.file + "\n[recoil]\ngunmas=3\n"), state,
                      options);
    EXPECT_EQ(options.maxtab, c.maxtab) << c.maxzul << c.file;
    EXPECT_EQ(options.gunmas, 3);
  }
}

TEST(Loads, PreviewTellsTheLoad) {
  EXPECT_EQ(load_preview(SectionedFile(kSample)),
            ".308 Win. -- 147grs .308 , 147 , FMJ BT\nExample R-04 : 46.3 grs -- LR\none\ntwo");
}

TEST(Loads, TransferFileHoldsTheShot) {
  Load load = read(kSample);
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
