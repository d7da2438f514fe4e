#include "ModelCard.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "Failure.h"

namespace evaluate {

namespace {

/// Smaller bins say too little to be called weak.
constexpr int WEAKNESS_MIN = 10;
constexpr size_t WEAKNESSES = 6;

const char* const INTRODUCTION =
    "# Model card\n\n"
    "Written by `evaluate card`; the command is at the end.\n\n"
    "**What was trained.** The detector's ring of three boosted cascades (palms turned by -30, 0 "
    "and\n+30 degrees; left hands by mirroring), a first verifier network of 8,472 values on "
    "patches of 35x33\nand a second one of 13,352 values on patches of 50x60. How: "
    "[training.md](training.md).\n\n"
    "**What for.** To tell a camera application that somebody holds up an open palm: as a trigger, "
    "with\na person in control of what follows. It does not tell who, reads no sign language, and "
    "is not meant\nfor watching people or for anything that depends on every palm being seen.\n\n";

const char* const SPLITS =
    "Palms for training come from sources with a licence alone; sources without one are used to "
    "mine what\nis no palm, and for evaluation. (`hagrid_capstone` states none of its own: its "
    "pictures are of a public\nset under CC BY-SA 4.0.) The split is by source, which mostly "
    "means by person and room; of four\nsources whose pictures each show somebody or something "
    "else (`hagrid_capstone`, `imagenet_sample`,\n`mouso_people`, `wuqi_rps_sxsw`) it is by "
    "picture, so that somebody may be in both parts. Nothing of\n`val` was trained on.\n\n";

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' '), last = text.find_last_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::string> cellsOf(const std::string& row) {
    std::vector<std::string> cells;
    std::istringstream stream(row);
    std::string cell;
    std::getline(stream, cell, '|');
    while (std::getline(stream, cell, '|')) cells.push_back(trimmed(cell));
    return cells;
}

std::string percent(const Figure& figure) {
    char text[96];
    const Interval& i = figure.interval;
    std::snprintf(text, sizeof text, "%.1f%% [%.1f, %.1f]", 100 * i.value, 100 * i.low,
                  100 * i.high);
    return text;
}

std::string number(const Figure& figure) {
    char text[96];
    const Interval& i = figure.interval;
    std::snprintf(text, sizeof text, "%.3g [%.3g, %.3g]", i.value, i.low, i.high);
    return text;
}

bool isShare(const Figure& figure) {
    return figure.measure == RECALL || figure.measure == SCENE_ALARMS ||
           figure.measure == POSE_ALARMS;
}

std::string rowOf(const std::string& label, const Figure& figure) {
    if (!isShare(figure)) {
        return "| " + label + " | " + std::to_string(figure.all) + " | " + number(figure) + " |\n";
    }
    return "| " + label + " | " + std::to_string(figure.some) + " of " +
           std::to_string(figure.all) + " | " + percent(figure) + " |\n";
}

std::string dataSection(const std::vector<DataSource>& sources) {
    std::string text = "## Data\n\n" + std::string(SPLITS);
    text +=
        "| split | source | where from | licence as stated there | images | palms | other "
        "hands | scenes |\n|---|---|---|---|---|---|---|---|\n";
    for (const DataSource& s : sources) {
        text += "| " + s.split + " | " + s.name + " | " + s.repository + " | " + s.licence + " | " +
                s.images + " | " + s.palms + " | " + s.hands + " | " + s.scenes + " |\n";
    }
    return text + "\n";
}

std::string videoLines(const Evaluation& run) {
    if (run.sequences.empty()) return "";
    const RaisedPalms raised(run.sequences);
    std::string frames;
    for (const int latency : raised.latencies) {
        frames += (frames.empty() ? ", " : "/") + std::to_string(latency);
    }
    if (!frames.empty()) frames += " frames after it came up";
    const AlarmRate alarms = alarmsInVideos(run.sequences);
    char text[256];
    std::snprintf(
        text, sizeof text,
        "Short clips of people: %s raised palms found%s; alarms without a palm:\n%s (95%%: "
        "at most %.0f an hour).\n",
        raised.text().c_str(), frames.c_str(), alarms.text().c_str(), alarms.perHour.high);
    return text;
}

std::string mainSection(const Report& report) {
    const Evaluation& run = report.evaluation;
    std::string text = "## Figures\n\nThe whole engine through the C interface, split `" +
                       run.split + "`, each photograph as nine frames ";
    text += run.every > 1 || run.limit > 0 ? "(a part of the photographs)" : "(all photographs)";
    text +=
        "; palms of 20 to 60\npixels in a frame of 320 by 240, leaning by at most 35 degrees. "
        "Intervals hold 95%, by draws of\npeople and of their pictures; \"mean of the "
        "sources\" counts every source alike.\n\n|  | counted |  |\n|---|---|---|\n";
    for (const Figure& figure : report.figures) {
        const std::string& group = figure.group;
        if (group == "all") text += rowOf(figure.measure, figure);
        if (group == "macro") text += rowOf(figure.measure + ", mean of the sources", figure);
        if (!isShare(figure)) text += rowOf(figure.measure + ", " + figure.bin, figure);
    }
    text += "\n" + videoLines(run);
    return text + "\n";
}

std::string groupTable(const Report& report, const std::string& group) {
    std::string rows;
    for (const Figure& figure : report.figures) {
        if (figure.measure != RECALL || figure.group != group || figure.bin.empty()) continue;
        rows += rowOf(figure.bin, figure);
    }
    if (rows.empty()) return "";
    return "| " + group + " | found |  |\n|---|---|---|\n" + rows + "\n";
}

std::string groupSection(const Report& report) {
    std::string text = "## By group\n\nRecall:\n\n";
    for (const char* group : {"palm width", "angle", "side", "brightness", "source"}) {
        text += groupTable(report, group);
    }
    return text + "Skin tone is not labelled; brightness of the hand is the nearest that is.\n\n";
}

std::string weaknessSection(const Report& report) {
    std::vector<Figure> weak;
    for (const Figure& figure : report.figures) {
        const bool sorted = figure.measure == RECALL && !figure.bin.empty();
        if (sorted && figure.all >= WEAKNESS_MIN) weak.push_back(figure);
    }
    std::stable_sort(weak.begin(), weak.end(), [](const Figure& a, const Figure& b) {
        return a.interval.value < b.interval.value;
    });
    weak.resize(std::min(weak.size(), WEAKNESSES));
    std::string text = "## Known weaknesses\n\nThe groups of " + std::to_string(WEAKNESS_MIN) +
                       " palms or more where most are missed:\n\n| group | found |  |\n"
                       "|---|---|---|\n";
    for (const Figure& figure : weak) text += rowOf(figure.group + " " + figure.bin, figure);
    text += "\nWhich stage lost the missed palms: ";
    const std::vector<int> losses = lossesByStage(report.evaluation.photographs);
    for (size_t i = 0; i < losses.size(); ++i) {
        text += (i ? ", " : "") + std::string(nameOf(static_cast<Stage>(i))) + " " +
                std::to_string(losses[i]);
    }
    return text +
           ".\n\nThe photographs are not ours to publish: `evaluate run --plots DIR` lays out the "
           "worst misses and\nalarms of each kind on sheets, with the stage and the file's "
           "name.\n\n"
           "![recall and false alarms](images/evaluation.png)\n\n"
           "Rendered palms, one property varied at a time; the number is the share found of those "
           "shown:\n\n"
           "![rendered palms found and missed](images/limits.jpg)\n\n";
}

}  // namespace

std::vector<DataSource> readSources(const std::string& path) {
    std::ifstream file(path);
    std::vector<DataSource> sources;
    for (std::string line; std::getline(file, line);) {
        const std::vector<std::string> c = cellsOf(line);
        if (c.size() < 8 || (c[0] != "train" && c[0] != "val")) continue;
        sources.push_back({c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]});
    }
    if (sources.empty()) {
        throw training::Failure(path +
                                ": no table of sources (| split | source | repository | "
                                "licence | images | palm | hand | scene |)");
    }
    return sources;
}

std::string modelCard(const Report& report, const std::vector<DataSource>& sources) {
    return INTRODUCTION + dataSection(sources) + mainSection(report) + groupSection(report) +
           weaknessSection(report) +
           "## How to make this page\n\n```sh\nevaluate run --data ../shared/data --json "
           "report.json\nevaluate card report.json --data ../shared/data --out "
           "docs/model-card.md \\\n    --picture "
           "docs/images/evaluation.png\nevaluate limits --out docs/images/limits.jpg\n```\n";
}

}  // namespace evaluate
