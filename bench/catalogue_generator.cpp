#include "bench/catalogue_generator.h"

#include <cstdio>

namespace {

// A small linear congruential generator: the same on every platform.
class Random {
 public:
  explicit Random(std::uint32_t seed) : m_state(seed * 2654435761u + 1u) {}
  std::uint32_t Next() {
    m_state = m_state * 1664525u + 1013904223u;
    return m_state >> 8;
  }
  std::uint32_t Below(std::uint32_t n) { return Next() % n; }

 private:
  std::uint32_t m_state;
};

const int kPackages = 120;
const int kAdapters = 400;
const int kModules = 12;
const char* const kWords[] = {"flash", "EEPROM", "OTP", "boot", "sector", "fast", "algorithm", "socket",
                              "clamp", "verify", "blank", "check", "parallel", "serial", "ISP", "JTAG"};

void AppendHeader(std::string& out, int layout) {
  char line[128];
  std::snprintf(line, sizeof line, "DEF_LAYOUT_VERSION = %d \r\n", layout);
  out += line;
  const bool braces = layout == 7;
  out += braces ? "HOUSING_LIST {\r\n" : "HOUSING_LIST ";
  for (int i = 0; i < kPackages; ++i) {
    std::snprintf(line, sizeof line, "PKG%d%s", i, braces ? ",\r\n" : (i + 1 < kPackages ? ", " : ";\r\n"));
    out += line;
  }
  if (braces) out += "}\r\n";
  out += braces ? "ADAPTER_LIST {\r\n" : "ADAPTER_LIST ";
  for (int i = 0; i < kAdapters; ++i) {
    std::snprintf(line, sizeof line, "ADP_%c_PKG%d/ZIF%s", 'A' + i % 26, i % kPackages,
                  braces ? ",\r\n" : (i + 1 < kAdapters ? ", " : ";\r\n"));
    out += line;
  }
  if (braces) out += "}\r\n";
  out += "MODUL_LIST ";
  for (int i = 0; i < kModules; ++i) {
    std::snprintf(line, sizeof line, "MOD%d%s", i, i + 1 < kModules ? ", " : ";\r\n\r\n");
    out += line;
  }
}

void AppendDefinition(std::string& out, int layout, std::uint32_t id, Random& random) {
  char line[512];
  const int generation = 3 + static_cast<int>(random.Below(3));
  int at = std::snprintf(line, sizeof line, "KVR%dDEF: %u %u %u ", generation, id, random.Below(kPackages),
                         random.Below(kModules));
  const int adapters = 1 + static_cast<int>(random.Below(3));
  for (int a = 0; a < adapters; ++a) {
    at += std::snprintf(line + at, sizeof line - static_cast<size_t>(at), a == 0 ? "%u" : ",%u",
                        random.Below(kAdapters));
  }
  if (layout == 1) {
    at += std::snprintf(line + at, sizeof line - static_cast<size_t>(at), " %u : ", random.Below(64));
  } else if (layout == 2) {
    at += std::snprintf(line + at, sizeof line - static_cast<size_t>(at), " %u %u %u : %u %u %u %u %u %X %u ",
                        random.Below(8), random.Below(8), random.Below(64), random.Below(300), random.Below(16),
                        random.Below(256), random.Below(4), random.Below(4), random.Below(0x10000), random.Below(10));
  } else {
    at += std::snprintf(line + at, sizeof line - static_cast<size_t>(at),
                        " %u %u %u %u %X %X %u %u %X %u %u : ", random.Below(8), random.Below(8), random.Below(64),
                        random.Below(300), random.Below(256), random.Below(16), random.Below(4), random.Below(4),
                        random.Below(0x10000), random.Below(10), random.Below(10));
  }
  const int words = 2 + static_cast<int>(random.Below(5));
  for (int w = 0; w < words; ++w) {
    at += std::snprintf(line + at, sizeof line - static_cast<size_t>(at), w == 0 ? "%s" : " %s",
                        kWords[random.Below(sizeof kWords / sizeof kWords[0])]);
  }
  out.append(line, static_cast<size_t>(at));
  out += "\r\n";
}

}  // namespace

std::string GenerateCatalogue(int layout, size_t targetBytes, std::uint32_t seed) {
  Random random(seed);
  std::string out;
  out.reserve(targetBytes + 4096);
  AppendHeader(out, layout);
  std::uint32_t id = 1000;
  char line[128];
  for (int kind = 0; out.size() < targetBytes; ++kind) {
    std::snprintf(line, sizeof line, "Kind_%d:\r\n\r\n", kind);
    out += line;
    for (int manuf = 0; manuf < 20 && out.size() < targetBytes; ++manuf) {
      std::snprintf(line, sizeof line, ":Maker_%d_%d\r\n\r\n", kind, manuf);
      out += line;
      for (int device = 0; device < 50 && out.size() < targetBytes; ++device) {
        std::snprintf(line, sizeof line, "%sDev_%d_%d_%d\r\n{\r\n",
                      layout == 7 && random.Below(20) == 0 ? "\xB0" : "", kind, manuf, device);
        out += line;
        const int definitions = 1 + static_cast<int>(random.Below(6));
        for (int d = 0; d < definitions; ++d) AppendDefinition(out, layout, id++, random);
        out += "}\r\n\r\n";
      }
    }
  }
  return out;
}

const char* ShapeName(InputShape shape) {
  switch (shape) {
    case InputShape::kNumbers: return "numbers";
    case InputShape::kName: return "name";
    case InputShape::kText: return "text";
    case InputShape::kDevices: return "devices";
    case InputShape::kLists: return "lists";
    case InputShape::kDefinitions: return "definitions";
    case InputShape::kHousings: return "housings";
    case InputShape::kCrLines: return "cr_lines";
  }
  return "";
}

int ShapeLayout(InputShape shape) {
  return shape == InputShape::kDefinitions || shape == InputShape::kHousings ? 7 : 1;
}

std::string GenerateShape(InputShape shape, size_t targetBytes) {
  const std::string head = ShapeLayout(shape) == 7
                               ? "DEF_LAYOUT_VERSION = 7\r\nHOUSING_LIST { P0, P1 }\r\nADAPTER_LIST { A0, A1 }\r\n"
                                 "MODUL_LIST M0;\r\n\r\nKind:\r\n\r\n:Maker\r\n\r\n"
                               : "DEF_LAYOUT_VERSION = 1\r\nHOUSING_LIST P0, P1;\r\nADAPTER_LIST A0, A1;\r\n"
                                 "MODUL_LIST M0;\r\n\r\nKind:\r\n\r\n:Maker\r\n\r\n";
  const char* values7 = " 1 2 3 4 5 6 7 8 9 10 11 : text\r\n";
  std::string out;
  out.reserve(targetBytes + 4096);
  switch (shape) {
    case InputShape::kNumbers:
      out = head + "Dev\r\n{\r\nKVR5DEF: 1 0 0 0";
      for (unsigned i = 1; out.size() < targetBytes; ++i) out += "," + std::to_string(i % 400);
      out += " 7 : text\r\n}\r\n";
      break;
    case InputShape::kName:
      out = head;
      out.append(targetBytes, 'N');
      out += "\r\n{\r\nKVR5DEF: 1 0 0 1 7 : text\r\n}\r\n";
      break;
    case InputShape::kText:
      out = head + "Dev\r\n{\r\nKVR5DEF: 1 0 0 1 7 :";
      while (out.size() < targetBytes) out += " text";
      out += "\r\n}\r\n";
      break;
    case InputShape::kDevices:
      out = head;
      for (unsigned i = 0; out.size() < targetBytes; ++i) out += "D" + std::to_string(i) + "\r\n{\r\n}\r\n";
      break;
    case InputShape::kLists: {
      out = "DEF_LAYOUT_VERSION = 1\r\n";
      const char* keywords[] = {"HOUSING_LIST ", "ADAPTER_LIST ", "MODUL_LIST "};
      for (const char* keyword : keywords) {
        out += keyword;
        const size_t end = out.size() + targetBytes / 3;
        for (unsigned i = 0; out.size() < end; ++i) out += "A_B_P" + std::to_string(i) + "/Z, ";
        out += "last;\r\n";
      }
      out += "\r\nKind:\r\n\r\n:Maker\r\n\r\nDev\r\n{\r\nKVR5DEF: 1 0 0 1 7 : text\r\n}\r\n";
      break;
    }
    case InputShape::kDefinitions:
      out = head + "Dev\r\n{\r\n";
      for (unsigned i = 1; out.size() < targetBytes; ++i) out += "KVR5DEF: " + std::to_string(i) + " 0 0 1" + values7;
      out += "}\r\n";
      break;
    case InputShape::kHousings:
      out = head + "Dev\r\n{\r\nDEVICE_HOUSING_LIST: { 0";
      for (unsigned i = 1; out.size() < targetBytes; ++i) out += ", " + std::to_string(i % 100);
      out += std::string(" }\r\nKVR5DEF: 1 0 0 1") + values7 + "}\r\n";
      break;
    case InputShape::kCrLines:
      for (char c : GenerateCatalogue(1, targetBytes)) {
        if (c != '\n') out += c;
      }
      break;
  }
  return out;
}
