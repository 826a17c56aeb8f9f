#include "tools/titles/SettingsSamples.h"

#include <algorithm>
#include <stdexcept>

namespace brisk::workbench {

const std::vector<SettingsSample>& settingsSamples() {
    static const std::vector<SettingsSample> samples{
        {"engine.ini", "[/Script/Game.UserSettings]\r\n"
                       "bUseVSync=False\r\n"
                       "ResolutionSizeX=1920\r\n"
                       "ResolutionSizeY=1080\r\n"
                       "LastResolutionSizeX=1920\r\n"
                       "FrameRateLimit=0.000000\r\n"
                       "Paths=(X=1920,Y=1080)\r\n"
                       "FullscreenMode=1\r\n"
                       "\r\n"
                       "[ScalabilityGroups]\r\n"
                       "sg.ResolutionQuality=100.000000\r\n"
                       "FullscreenMode=2\r\n"
                       "+Paths[0]=a\r\n"},
        {"sections.ini", "\xEF\xBB\xBF"
                         "; video\n"
                         "[Display]\n"
                         "  Width = 1280 ; pixels\n"
                         "  Height = 720\n"
                         "  Mode = Very High   # note\n"
                         "Gamma=-0.5\n"
                         "[Window]\n"
                         "  Width = 800\n"
                         "\tHeight\t=\t600\n"
                         "Name=\"A \\ b\"\n"
                         "Empty=\n"
                         "[List]\n"
                         "A[0]=[1]\n"
                         "Width=5\n"
                         "Path=C:\\x;y\n"},
        {"flat.cfg", "\xEF\xBB\xBF"
                     "width=1920\n"
                     "height=1080\n"
                     "fps_limit = 60;cap\n"
                     "name: value here\n"
                     "lang:en_us\n"
                     "resolution = 640,480\n"
                     "mode 3\n"},
        {"cvar.cfg", "// generated\n"
                     "seta r_mode \"-1\"\n"
                     "seta r_customwidth \"1920\"\n"
                     "set r_customheight \"1080\"\n"
                     "bind w +forward\n"
                     "r_fullscreen 1\n"
                     "seta r_gamma 1.3\n"},
        {"vdf.txt", "\"VideoConfig\"\n"
                    "{\n"
                    "\t\"setting.defaultres\"\t\t\"1920\"\n"
                    "\t\"setting.fullscreen\"\t\t\"1\"\n"
                    "}\n"},
        {"video.xml", "<?xml version=\"1.0\"?>\n"
                      "<!-- width=\"1\" -->\n"
                      "<video version=\"3\">\n"
                      "  <resolution width=\"1920\" height=\"1080\" maxwidth='4'/>\n"
                      "  <window\n"
                      "    width = \"1920\"\n"
                      "    height=\"1080\"\n"
                      "  />\n"
                      "  <setting name=\"vsync\" value=\"true\"/>\n"
                      "  <setting name=\"fps\" value=\"60\"/>\n"
                      "  <setting value=\"-0.5\" id=\"bias\"/>\n"
                      "  <Display><Width>1920</Width><Mode> Full Screen </Mode></Display>\n"
                      "  <Window><Width>800</Width></Window>\n"
                      "  <key>A</key><integer>5</integer>\n"
                      "  <key>B</key><integer>6</integer>\n"
                      "  <e></e>\n"
                      "</video>\n"},
        {"set.json", "{\n"
                     "  \"version\": 3,\n"
                     "  \"width\": 1,\n"
                     "  \"display\": { \"width\": 1920, \"height\": 1080, \"sub\": {\"width\": 7} },\n"
                     "  \"window\": { \"sub\": {\"width\": 8}, \"width\": 800, \"mode\": \"Very \\\"High\\\"\", "
                     "\"vsync\": true, \"scale\": 1.5 },\n"
                     "  \"resolution\": [1920, 1080],\n"
                     "  \"list\": [ {\"name\": \"a\", \"value\": 1}, {\"name\": \"b\", \"value\": -2} ],\n"
                     "  \"n\": null, \"maxwidth\": 5\n"
                     "}\n"},
        {"min.json", "{\"a\":{\"width\":1920,\"height\":1080},\"b\":{\"width\":1}}"},
        {"conf.lua", "-- settings\n"
                     "local cfg = {\n"
                     "  width = 1920, height = 1080,\n"
                     "  [\"full screen\"] = true,\n"
                     "  display = {\n"
                     "    width = 1280, -- note\n"
                     "    mode = 'borderless',\n"
                     "  },\n"
                     "  window = { width = 640, size = { 800, 600 } },\n"
                     "}\n"
                     "cfg.scale = 0.75\n"
                     "return cfg\n"},
        {"lib.cfg", "display: {\n"
                    "  width = 1920;\n"
                    "  height = 1080;\n"
                    "};\n"
                    "window: {\n"
                    "  width = 5;\n"
                    "};\n"},
        {"yaml.yml", "video:\n"
                     "  width: 1920\n"
                     "  height: 1080\n"
                     "audio:\n"
                     "  volume: 80\n"
                     "  name: \"Main out\"\n"},
        {"first.ini", "[A]\n"
                      "Width=1\n"
                      "[B]\n"
                      "Width=2\n"
                      "[C]\n"
                      "Other=[x]\n"
                      "Width=3"},
    };
    return samples;
}

const std::string& settingsSample(const std::string& name) {
    const auto& samples = settingsSamples();
    const auto found = std::find_if(samples.begin(), samples.end(),
                                    [&name](const SettingsSample& sample) { return sample.name == name; });
    if (found == samples.end()) {
        throw std::invalid_argument("no sample " + name);
    }
    return found->bytes;
}

} // namespace brisk::workbench
