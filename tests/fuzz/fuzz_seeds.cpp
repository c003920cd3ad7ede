// Writes the generated seed files of one fuzzer into a directory:
//     fuzz_seeds NAME DIR
// Every form the readers know, small: XPM 3, XPM 2 natural, C and Lisp,
// XPM 1, extensions, transparent colours, monochrome keys, hotspots; XBM
// of X11 and X10 with hotspots; drop lists, texts, words and property names.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Seeds = std::vector<std::string>;

// A pattern that uses every colour, one character or two a pixel.
std::string pixel_rows(int width, int height, const std::vector<std::string>& keys, const char* open,
                       const char* close)
{
    std::string s;
    for (int y = 0; y < height; y++) {
        s += open;
        for (int x = 0; x < width; x++)
            s += keys[static_cast<size_t>(x * 3 + y * 5 + x * y) % keys.size()];
        s += close;
    }
    return s;
}

Seeds xpm_seeds()
{
    Seeds s;
    std::vector<std::string> two = {"  ", ".X", "oO", "+@", "#$", "%&"};
    s.push_back("/* XPM */\nstatic char *pic[] = {\n/* width height ncolors cpp x_hot y_hot */\n"
                "\"12 9 6 2 2 2\",\n\"   c None\",\n\".X c #FF0000 m black\",\n\"oO c #00FF00 m white\",\n"
                "\"+@ c #0000FFFF0000\",\n\"#$ c gray50 s shade g4 gray g gray\",\n\"%& c #123456\",\n"
                "/* pixels */\n" +
                pixel_rows(12, 9, two, "\"", "\",\n") + "};\n");
    std::vector<std::string> one = {"a", "b", "c"};
    s.push_back("/* XPM */\nstatic char *ext[] = {\n\"5 3 3 1 0 0 XPMEXT\",\n\"a c #Transparent\",\n"
                "\"b c red m white\",\n\"c c blue m black\",\n" +
                pixel_rows(5, 3, one, "\"", "\",\n") + "\"XPMEXT note a few words\",\n\"XPMENDEXT\"\n};\n");
    // The form read without libXpm: one character a pixel, a hotspot at 1 1,
    // a key given twice, comments between the strings, colours of words.
    s.push_back("/* XPM */\nstatic char *q[] = {\n\"6 4 4 1 1 1\",\n/* colours */\n\"a c #FF0000\",\n"
                "\"b s edge m black c light gray\",\n\"c c None\",\n\"a c blue\",\n/* pixels **/\n" +
                pixel_rows(6, 4, one, "\"", "\",\n") + "};\n");
    s.push_back("/* XPM */\nstatic char *r[] = {\n\"4 2 2 2\",\n\"  c None\",\n\"##\tc\t#000\",\n"
                "\"    ####\"\r\n\"##  ##  \"\r\n};\n");
    s.push_back("! XPM2\n4 3 3 1\na c #FF0000\nb c None\nc c #00FF00 m black\n" + pixel_rows(4, 3, one, "", "\n"));
    s.push_back("! XPM2 C\n\"4 3 3 1\"\n\"a c #FF0000\"\n\"b c None\"\n\"c c #0000FF\"\n" +
                pixel_rows(4, 3, one, "\"", "\"\n"));
    s.push_back("! XPM2 Lisp\n(setq pic '(\n\"4 2 3 1\"\n\"a c #FF0000\"\n\"b c None\"\n\"c c white\"\n" +
                pixel_rows(4, 2, one, "\"", "\"\n") + "))\n");
    s.push_back("#define pic_format 1\n#define pic_width 4\n#define pic_height 2\n#define pic_ncolors 3\n"
                "#define pic_chars_per_pixel 1\nstatic char * pic_colors[] = {\n\"a\" , \"#FF0000\",\n"
                "\"b\" , \"None\",\n\"c\" , \"#00FF00\"\n};\nstatic char * pic_pixels[] = {\n" +
                pixel_rows(4, 2, one, "\"", "\" ,\n") + "};\n");
    return s;
}

std::string xbm_text(const char* name, int width, int height, int hx, int hy, const char* type)
{
    bool shorts = !std::strcmp(type, "short");
    std::string s = "#define " + std::string(name) + "_width " + std::to_string(width) + "\n#define " + name +
                    "_height " + std::to_string(height) + "\n";
    if (hx >= 0)
        s += "#define " + std::string(name) + "_x_hot " + std::to_string(hx) + "\n#define " + name + "_y_hot " +
             std::to_string(hy) + "\n";
    s += "static " + std::string(type) + " " + name + "_bits[] = {\n";
    int units = shorts ? (width + 15) / 16 * height : (width + 7) / 8 * height;
    for (int i = 0; i < units; i++) {
        char value[16];
        std::snprintf(value, sizeof value, shorts ? "0x%04x" : "0x%02x", (i * 37 + 5) & (shorts ? 0xffff : 0xff));
        s += std::string("   ") + value + (i + 1 < units ? "," : "};") + (i % 8 == 7 ? "\n" : "");
    }
    return s + "\n";
}

Seeds xbm_seeds()
{
    return {
        xbm_text("pic", 17, 6, 1, 1, "char"),
        xbm_text("tall", 3, 12, -1, -1, "unsigned char"),
        xbm_text("old", 16, 2, -1, -1, "short"),
        "/* a bitmap */\n" + xbm_text("c", 9, 3, 8, 2, "char"),
    };
}

Seeds drop_seeds()
{
    using namespace std::string_literals;
    std::string words(1 + 5 * sizeof(long), '\0');
    words[0] = 2;
    for (size_t i = 1; i < words.size(); i++)
        words[i] = static_cast<char>(i * 29);
    return {
        "\x00host\0/tmp/a.xpm\0/tmp/b.xbm\0"s,
        "\x04host\0/only/one\0tail"s,
        "\x01host\0/tmp/pic.xpm\0"s,
        "\x01host\0"s,
        "\x05/tmp/pic.xpm\r\n"s,
        words,
        "\x03OXA_DROP_PROTOCOL_4194305_55d0c0ffee"s,
    };
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: fuzz_seeds NAME DIR\n");
        return 2;
    }
    std::string name = argv[1];
    Seeds seeds;
    if (name == "xpm_reader")
        seeds = xpm_seeds();
    else if (name == "xbm_reader")
        seeds = xbm_seeds();
    else if (name == "image_header") {
        seeds = xpm_seeds();
        for (const std::string& s : xbm_seeds())
            seeds.push_back(s);
    } else if (name == "drop_data")
        seeds = drop_seeds();
    else {
        std::fprintf(stderr, "fuzz_seeds: no fuzzer named %s\n", argv[1]);
        return 2;
    }
    for (size_t i = 0; i < seeds.size(); i++) {
        std::string path = std::string(argv[2]) + "/seed-" + std::to_string(i);
        std::ofstream out(path, std::ios::binary);
        out << seeds[i];
        if (!out) {
            std::fprintf(stderr, "fuzz_seeds: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
