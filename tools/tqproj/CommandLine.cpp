#include "tools/tqproj/CommandLine.h"

#include "proj/TQReferenceSystem.h"
#include "support/TQNumberText.h"
#include "support/TQPlatform.h"
#include "tools/tqproj/AngularText.h"
#include "tools/tqproj/CatalogCommand.h"
#include "tools/tqproj/CheckCommand.h"
#include "tools/tqproj/ConvertCommand.h"
#include "tools/tqproj/CreateCommand.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/DrawCommand.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/InspectCommand.h"
#include "tools/tqproj/ListCommand.h"
#include "tools/tqproj/NumberFormat.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/PackCommand.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/ShowCommand.h"
#include "tools/tqproj/TransformCommand.h"
#include "tools/tqproj/UnpackCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <thread>

namespace {

constexpr const char* description = "Converts points through map projections.";

constexpr const char* notes =
    R"--(PROJECTION is the path of a projection file; or a definition: an authority's
code (EPSG:2154), a PROJ string (+proj=...), WKT or PROJJSON; or a name as
"tqproj list" or "tqproj catalog" gives it: "Lambert-93" or
"RGF93 v1 / Lambert-93 (EPSG:2154)". A file that can be opened is taken for a file;
--file, --definition and --name leave no doubt.
Exit status: 0 all went well; 1 some lines could not be converted, or nothing was
found; 2 wrong usage, a file that cannot be read or written, a projection, system
or family that there is not.
"tqproj COMMAND --help" tells more.)--";

constexpr const char* convertDescription = "Convert longitude and latitude to x and y, or back";

constexpr const char* convertNotes =
    R"(A point a line: the first two fields, separated by blanks or a comma, are the
point; the rest of the line is carried through. Empty lines and lines that begin
with # pass unchanged. A line that cannot be converted comes out with * in place
of both numbers and is reported as FILE:LINE: reason; so does a point for which
the formulas of the projection are not right, but for --beyond-domain. "tqproj
show" names the datum of longitude and latitude.

Examples:
  tqproj convert -p "World Mercator (WGS 84).proj" cities.csv
  echo 2.3522 48.8566 Paris | tqproj convert -p "World Mercator (WGS 84).proj"
  tqproj convert -p "World Mercator (WGS 84).proj" --inverse --unit dms points.txt
  tqproj convert -p "World Mercator (WGS 84).proj" --precision full < in.txt > out.txt
  echo 2.3522 48.8566 | tqproj convert -p EPSG:2154)";

constexpr const char* transformDescription =
    "Transform longitude and latitude from one reference system to another";

constexpr const char* transformNotes =
    R"(TEXT defines a geographic reference system with two dimensions: an authority's
code (EPSG:4326), WKT, a PROJ string with +type=crs, its whole name or a name of
the catalogue.
The lines are those of "tqproj convert": a point is longitude and latitude, the
rest of the line is carried through.

Examples:
  tqproj transform --from EPSG:4326 --to EPSG:4275 cities.csv
  echo 2.3522 48.8566 Paris | tqproj transform --from EPSG:4326 --to EPSG:4275
  tqproj transform --from EPSG:4326 --to EPSG:4275 --inverse --unit dms points.txt)";

constexpr const char* showDescription = "Describe a projection";

constexpr const char* showNotes = R"(Examples:
  tqproj show -p "World Mercator (WGS 84).proj"
  tqproj show -p "World Mercator (WGS 84).proj" --wkt1
  tqproj show -p EPSG:2154 --wkt2)";

constexpr const char* listDescription = "List the projections that are known by name";

constexpr const char* listNotes =
    R"(The projections that come with the library, and those of --projections DIR, a line
each: name, type and ellipsoid; or the ellipsoids: name, semi-major axis, inverse
flattening and kind of datum shift. Columns are separated by tabs. Words choose the
lines that hold each of them.

Examples:
  tqproj list
  tqproj list utm 31N
  tqproj list --ellipsoids bessel)";

constexpr const char* catalogDescription = "List reference systems in families";

constexpr const char* catalogNotes =
    R"(Without options the families are listed, a line each: name and number of systems.
A system's line is its code, its name and its family. Columns are separated by
tabs. TEXT is searched for in names, codes, families and areas of use; of several
words each must be found. Capital and small letters from A to Z count the same.

Examples:
  tqproj catalog
  tqproj catalog --family France
  tqproj catalog --search "lambert corsica"
  tqproj catalog --search 2154 --json)";

constexpr const char* createDescription = "Write a projection file";

constexpr const char* createNotes =
    R"(Parameters are those that "tqproj show" lists, angles in degrees and lengths in
metres; those that are not set keep the value they have in a new projection of
the type. A type or ellipsoid that there is not is refused with the names that
there are, as is a parameter. The file is read back before it is written: a
definition that it cannot hold is refused, and by how much a rounded one moves
coordinates is said.

Example:
  tqproj create --type Lambert --name "Lambert-93 again" --ellipsoid "GRS 1980" \
    --set lambda0=3 --set latitudeOrigin=46.5 --set X0=700000 --set Y0=6600000 \
    --set Tangent=false --set stdPar1=49 --set stdPar2=44 -o again.proj)";

constexpr const char* checkDescription = "Check projection, ellipsoid and datum files";

constexpr const char* checkNotes =
    R"(The .proj, .ell and .dtm files of the command line, and those of the directories on
it, are read. Each problem is a line: FILE:LINE: code CODE: what it means, when the
file cannot be read; FILE:LINE: warning: ..., when it can, but hardly as it was
meant. Datum files may name ellipsoids of files that are checked too.

Examples:
  tqproj check "World Mercator (WGS 84).proj"
  tqproj check my-projections/)";

constexpr const char* packDescription = "Write a document that holds projections";

constexpr const char* packNotes =
    R"(A document holds the projections, by the names that "tqproj list" gives, and their
ellipsoids, so that an application can use them where it lacks their files.

Examples:
  tqproj pack -o survey.doc Lambert-93 "CH1903+ / LV95"
  tqproj inspect survey.doc
  tqproj unpack survey.doc -d projections/)";

constexpr const char* unpackDescription = "Write the projections of a document as projection files";

constexpr const char* unpackNotes =
    R"(Each projection of the document becomes a file that has its name; a file that is
there already stays, the new one gets a number.

Example:
  tqproj unpack survey.doc -d projections/)";

constexpr const char* inspectDescription = "Print the blocks of a document of projections";

constexpr const char* inspectNotes =
    R"(A line for each block: the byte at which it begins, the class names and versions at
its head, outermost first, and what it holds. Columns are separated by tabs.

Example:
  tqproj inspect survey.doc)";

constexpr const char* drawDescription = "Draw a map of a projection";

constexpr const char* drawNotes =
    R"--(The map shows the area that the projection is meant for, or that of --extent; the
cities that come with the library, or the points of a file, whose lines are those
of "tqproj convert": longitude, latitude and a name. Lines have their coordinates
at their southern and western ends; columns are called A, B, C ..., rows 1, 2, 3
... The name of FILE tells what is drawn: .svg, .png or .pdf.

Examples:
  tqproj draw -p Lambert-93
  tqproj draw -p "UTM zone 32N (WGS 84)" --extent 6,47,12,55 --metric 100000 -o utm.pdf
  tqproj draw -p EPSG:3035 --graticule 5 --points places.csv -o europe.png)--";

constexpr int greatestJobs = 1000;

// "full", or a number of decimals; nothing for any other text.
std::optional<int> precisionFromText(std::string_view text) {
    if (text == "full") {
        return NumberFormat::fullPrecision;
    }
    int decimals = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), decimals);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || decimals < 0 || decimals > NumberFormat::greatestPrecision) {
        return std::nullopt;
    }
    return decimals;
}

std::string checkPrecision(const std::string& text) {
    if (precisionFromText(text)) {
        return {};
    }
    return "'" + printableText(text) + "' is neither a number from 0 to " +
           std::to_string(NumberFormat::greatestPrecision) + " nor \"full\"";
}

std::string checkJobs(const std::string& text) {
    std::int32_t jobs = 0;
    if (tq_parseCompleteLong(text, jobs) && jobs >= 1 && jobs <= greatestJobs) {
        return {};
    }
    return "'" + printableText(text) + "' is not a number from 1 to " + std::to_string(greatestJobs);
}

// One for each core, as far as they can be counted.
int usualJobs() { return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, greatestJobs); }

std::string checkUnit(const std::string& name) {
    if (AngularText::unitFromName(name) != 0) {
        return {};
    }
    return "'" + printableText(name) + "' is none of deg, rad, gon, dms";
}

std::optional<DatumChoice> datumFromName(std::string_view name) {
    return name == "own"     ? std::optional(DatumChoice::Own)
           : name == "wgs84" ? std::optional(DatumChoice::WGS84)
                             : std::nullopt;
}

std::string checkDatum(const std::string& name) {
    return datumFromName(name) ? "" : "'" + printableText(name) + "' is neither own nor wgs84";
}

std::string checkExtent(const std::string& text) {
    if (GeographicExtent::fromText(text)) {
        return {};
    }
    return "'" + printableText(text) + "' is no extent of longitudes and latitudes in degrees";
}

std::string checkDistance(const std::string& text) {
    double distance = 0.0;
    if (tq_parseCompleteDouble(text, distance) && std::isfinite(distance) && distance > 0.0) {
        return {};
    }
    return "'" + printableText(text) + "' is no distance";
}

std::string checkMapFile(const std::string& path) {
    if (DrawCommand::canWrite(path)) {
        return {};
    }
    return "'" + printableText(path) + "' ends in none of .svg, .png, .pdf";
}

std::string checkNotEmpty(const std::string& text) { return text.empty() ? "the text is empty" : ""; }

// Options as the parser leaves them, and the commands that they lead to.
class CommandLine {
  public:
    CommandLine() : _app(description, "tqproj") {
        _app.footer(notes);
        _app.require_subcommand(0, 1);
        _app.set_version_flag("--version", "tqproj " TQPROJ_VERSION);
        _app.get_formatter()->column_width(34);
        addConvert();
        addTransform();
        addShow();
        addList();
        addCatalog();
        addCreate();
        addCheck();
        addPack();
        addUnpack();
        addInspect();
        addDraw();
    }

    int run(std::vector<std::string> arguments) {
        try {
            std::reverse(arguments.begin(), arguments.end()); // as CLI11 takes them
            _app.parse(std::move(arguments));
        } catch (const CLI::CallForHelp&) {
            return print(_app.help());
        } catch (const CLI::CallForVersion& version) {
            return print(std::string(version.what()) + "\n");
        } catch (const CLI::ParseError& error) {
            return refuse(error.what(), usedCommand());
        }
        return _chosen ? runChosen() : refuse("a command is missing", _app);
    }

  private:
    using Run = std::function<ExitCode()>;

    int runChosen() {
        try {
            return static_cast<int>(_chosen());
        } catch (const std::bad_alloc&) {
            _diagnostics.reportProblem("there is not enough memory");
            return static_cast<int>(ExitCode::Failure);
        }
    }

    void addConvert() {
        CLI::App& command = addCommand("convert", convertDescription, convertNotes,
                                       [this] { return runPoints<ConvertCommand>(_convertOptions); });
        addProjectionOption(command, _convertOptions.projection);
        addPointOptions(command, _convertOptions, "from x and y to longitude and latitude");
        addDatum(command, _convertOptions.datum);
        const auto takeBeyond = [this] { _convertOptions.beyond = BeyondDomain::Convert; };
        command.add_flag_callback("--beyond-domain", takeBeyond,
                                  "convert points beyond the domain of the projection too");
        addJobs(command, _convertOptions.jobs);
    }

    void addTransform() {
        CLI::App& command = addCommand("transform", transformDescription, transformNotes,
                                       [this] { return runPoints<TransformCommand>(_transformOptions); });
        addSystem(command, "--from", _transformOptions.source, "the reference system of the points");
        addSystem(command, "--to", _transformOptions.target, "the reference system of the results");
        addPointOptions(command, _transformOptions, "from the system of --to back to that of --from");
        command.add_flag("--ballpark", _transformOptions.allowsBallpark,
                         "as if both stood on one datum, where PROJ knows no transformation");
    }

    void addShow() {
        CLI::App& command = addCommand("show", showDescription, showNotes, [this] { return runShow(); });
        addProjectionOption(command, _showOptions.projection);
        using Form = ShowOptions::Form;
        CLI::App* const forms = command.add_option_group("form")->require_option(0, 1);
        addForm(*forms, "--wkt1,--wkt", Form::WKT1, "write the definition as well-known text, version 1");
        addForm(*forms, "--wkt2", Form::WKT2, "write it as well-known text of 2019");
        addForm(*forms, "--proj", Form::PROJ, "write it as a PROJ string");
    }

    void addList() {
        CLI::App& command = addCommand("list", listDescription, listNotes, [this] { return runList(); });
        addDirectory(command, _listOptions.directory);
        command.add_flag("--ellipsoids", _listOptions.listsEllipsoids, "list ellipsoids");
        const auto takeWords = [this](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
                _listOptions.search += text + " ";
            }
        };
        command
            .add_option_function<std::vector<std::string>>("TEXT", takeWords, "words that a line must hold")
            ->type_name("");
    }

    void addCatalog() {
        CLI::App& command =
            addCommand("catalog", catalogDescription, catalogNotes, [this] { return runCatalog(); });
        addText(command, "--family", _catalogOptions.family, "NAME", "list the systems of a family");
        addText(command, "--search", _catalogOptions.search, "TEXT",
                "list the systems that hold all words of a text");
        command.add_flag("--json", _catalogOptions.isJson, "write JSON");
    }

    void addCreate() {
        CLI::App& command =
            addCommand("create", createDescription, createNotes, [this] { return runCreate(); });
        addText(command, "--type", _createOptions.type, "TYPE", "the type of projection")->required();
        addText(command, "--name", _createOptions.name, "NAME", "what it is called")->required();
        addText(command, "--ellipsoid", _createOptions.ellipsoid, "NAME", "its ellipsoid");
        command
            .add_option("--set", _createOptions.parameters, "the value of a parameter; may be given often")
            ->type_name("PARAMETER=VALUE")
            ->allow_extra_args(false);
        command.add_flag("--exact", _createOptions.isExact, "write numbers with all their digits");
        addPath(command, "-o,--output", _createOptions.path, "FILE",
                "the file to write; - is the standard output")
            ->required();
    }

    void addCheck() {
        CLI::App& command = addCommand("check", checkDescription, checkNotes, [this] { return runCheck(); });
        const auto takePaths = [this](const std::vector<std::string>& texts) {
            std::ranges::transform(texts, std::back_inserter(_checkOptions.paths), pathOf);
        };
        command.add_option_function<std::vector<std::string>>("PATH", takePaths, "files and directories")
            ->type_name("")
            ->check(CLI::Validator(checkNotEmpty, "", "text"))
            ->required();
    }

    void addPack() {
        CLI::App& command = addCommand("pack", packDescription, packNotes, [this] { return runPack(); });
        addText(command, "NAME", _packOptions.names, "", "projections")->required();
        addPath(command, "-o,--output", _packOptions.path, "FILE",
                "the file to write; - is the standard output")
            ->required();
        addDirectory(command, _packOptions.directory);
    }

    void addUnpack() {
        CLI::App& command =
            addCommand("unpack", unpackDescription, unpackNotes, [this] { return runUnpack(); });
        addText(command, "DOC", _unpackOptions.path, "", "the document; - is the standard input")->required();
        addPath(command, "-d,--directory", _unpackOptions.directory, "DIR", "where the files go")->required();
    }

    void addInspect() {
        CLI::App& command =
            addCommand("inspect", inspectDescription, inspectNotes, [this] { return runInspect(); });
        addText(command, "DOC", _inspectOptions.path, "", "the document; - is the standard input")
            ->required();
    }

    void addDraw() {
        CLI::App& command = addCommand("draw", drawDescription, drawNotes, [this] { return runDraw(); });
        addProjectionOption(command, _drawOptions.projection);
        const auto takeExtent = [this](const std::string& text) {
            _drawOptions.extent = GeographicExtent::fromText(text);
        };
        command.add_option_function<std::string>("--extent", takeExtent, "the part of the world, in degrees")
            ->type_name("WEST,SOUTH,EAST,NORTH")
            ->check(CLI::Validator(checkExtent, "", "extent"));
        CLI::App* const lines = command.add_option_group("lines")->require_option(0, 1);
        addDistance(*lines, "--graticule", _drawOptions.graticule, "DEGREES",
                    "meridians and parallels at a distance");
        addDistance(*lines, "--metric", _drawOptions.metric, "METRES", "lines of the plane at a distance");
        addText(command, "--points", _drawOptions.points, "FILE", "points; - is the standard input");
        command
            .add_option("-o,--output", _drawOptions.path,
                        "the file to write; - is SVG on the standard output")
            ->type_name("FILE")
            ->capture_default_str()
            ->check(CLI::Validator(checkMapFile, "", "file"));
    }

    static void addDistance(CLI::App& lines, const char* name, double& distance, const char* type,
                            const char* help) {
        lines
            .add_option_function<std::string>(
                name, [&distance](const std::string& text) { distance = tq_parseDouble(text); }, help)
            ->type_name(type)
            ->check(CLI::Validator(checkDistance, "", "distance"));
    }

    /// An option, or an argument, that takes texts which are not empty.
    template <class Value>
    static CLI::Option* addText(CLI::App& command, const char* name, Value& value, const char* type,
                                const char* help) {
        return command.add_option(name, value, help)
            ->type_name(type)
            ->check(CLI::Validator(checkNotEmpty, "", "text"));
    }

    /// An option, or an argument, that takes a path.
    static CLI::Option* addPath(CLI::App& command, const char* name, std::filesystem::path& path,
                                const char* type, const char* help) {
        return command
            .add_option_function<std::string>(
                name, [&path](const std::string& text) { path = pathOf(text); }, help)
            ->type_name(type)
            ->check(CLI::Validator(checkNotEmpty, "", "text"));
    }

    CLI::App& addCommand(const char* name, const char* help, const char* footer, const Run& run) {
        CLI::App* const command = _app.add_subcommand(name, help);
        command->footer(footer);
        command->callback([this, run] { _chosen = run; });
        return *command;
    }

    // What the commands that convert points have in common.
    static void addPointOptions(CLI::App& command, PointOptions& options, const char* inverseHelp) {
        const auto takeInverse = [&options] { options.direction = Direction::Inverse; };
        const auto takeUnit = [&options](const std::string& name) {
            options.angularUnit = AngularText::unitFromName(name);
        };
        const auto takePrecision = [&options](const std::string& text) {
            options.precision = precisionFromText(text);
        };
        command.add_flag_callback("-I,--inverse", takeInverse, inverseHelp);
        command.add_option_function<std::string>("--unit", takeUnit, "unit of longitude and latitude")
            ->type_name("deg|rad|gon|dms")
            ->default_str("deg")
            ->check(CLI::Validator(checkUnit, "", "unit"));
        command
            .add_option_function<std::string>(
                "--precision", takePrecision,
                "decimals of the results; full: the fewest digits that lose nothing")
            ->type_name("N|full")
            ->check(CLI::Validator(checkPrecision, "", "precision"));
        command.add_option("FILE", options.files, "inputs; none or - is the standard input")->type_name("");
    }

    static void addDatum(CLI::App& command, DatumChoice& datum) {
        command
            .add_option_function<std::string>(
                "--datum", [&datum](const std::string& name) { datum = *datumFromName(name); },
                "datum of longitude and latitude: the projection's own, or WGS 84")
            ->type_name("own|wgs84")
            ->check(CLI::Validator(checkDatum, "", "datum"));
    }

    static void addJobs(CLI::App& command, int& jobs) {
        jobs = usualJobs();
        command
            .add_option_function<std::string>(
                "--jobs", [&jobs](const std::string& text) { jobs = tq_parseLong(text); },
                "threads that convert; as many as cores unless given")
            ->type_name("N")
            ->check(CLI::Validator(checkJobs, "", "jobs"));
    }

    static void addSystem(CLI::App& command, const char* name, std::string& definition, const char* help) {
        addText(command, name, definition, "TEXT", help)->required();
    }

    void addForm(CLI::App& forms, const char* name, ShowOptions::Form form, const char* help) {
        forms.add_flag_callback(
            name, [this, form] { _showOptions.form = form; }, help);
    }

    static void addProjectionOption(CLI::App& command, ProjectionArgument& projection) {
        using Kind = ProjectionArgument::Kind;
        CLI::App* const ways = command.add_option_group("projection")->require_option(1);
        addWay(*ways, "-p,--projection", projection, Kind::Any, "PROJECTION", "the projection");
        addWay(*ways, "--file", projection, Kind::File, "PATH", "the projection by its file");
        addWay(*ways, "--definition", projection, Kind::Definition, "TEXT",
               "the projection by its definition");
        addWay(*ways, "--name", projection, Kind::Name, "NAME", "the projection by its name");
        addDirectory(command, projection.directory);
    }

    static void addDirectory(CLI::App& command, std::filesystem::path& directory) {
        addPath(command, "--projections", directory, "DIR", "a directory of projection files");
    }

    static void addWay(CLI::App& ways, const char* name, ProjectionArgument& projection,
                       ProjectionArgument::Kind kind, const char* type, const char* help) {
        const auto take = [&projection, kind](const std::string& text) {
            projection.text = text;
            projection.kind = kind;
        };
        ways.add_option_function<std::string>(name, take, help)
            ->type_name(type)
            ->check(CLI::Validator(checkNotEmpty, "", "projection"));
    }

    // Runs a command that converts points.
    template <class Command, class Options>
    ExitCode runPoints(Options& options) {
        options.showsProgress = showsProgress(options.files);
        return Command(options, *std::cin.rdbuf(), _output, _diagnostics).run();
    }

    // Not where the results themselves or the user's typing share the terminal with the status line.
    static bool showsProgress(const std::vector<std::string>& files) {
        const bool readsStandardInput =
            files.empty() || std::ranges::any_of(files, &InputFile::isStandardInput);
        const bool isTyped = readsStandardInput && tq_isTerminal(stdin);
        return tq_isTerminal(stderr) && !tq_isTerminal(stdout) && !isTyped;
    }

    ExitCode runList() { return ListCommand(_listOptions, _output, _diagnostics).run(); }

    ExitCode runCreate() { return CreateCommand(_createOptions, _output, _diagnostics).run(); }

    ExitCode runCheck() { return CheckCommand(_checkOptions, _output, _diagnostics).run(); }

    ExitCode runPack() { return PackCommand(_packOptions, _output, _diagnostics).run(); }

    ExitCode runUnpack() { return UnpackCommand(_unpackOptions, _diagnostics).run(); }

    ExitCode runInspect() { return InspectCommand(_inspectOptions, _output, _diagnostics).run(); }

    ExitCode runDraw() { return DrawCommand(_drawOptions, _output, _diagnostics).run(); }

    ExitCode runCatalog() { return CatalogCommand(_catalogOptions, _output, _diagnostics).run(); }

    ExitCode runShow() { return ShowCommand(_showOptions, _output, _diagnostics).run(); }

    int print(const std::string& text) {
        _output.text() += text;
        return static_cast<int>(_output.finish(_diagnostics));
    }

    /// The subcommand of the command line; the command itself while there is none.
    const CLI::App& usedCommand() const {
        const auto subcommands = _app.get_subcommands();
        return subcommands.empty() ? _app : *subcommands.front();
    }

    int refuse(std::string text, const CLI::App& command) {
        std::ranges::replace(text, '\n', ' ');
        const std::string name = &command == &_app ? "tqproj" : "tqproj " + command.get_name();
        _diagnostics.reportProblem(text + " (see " + name + " --help)");
        return static_cast<int>(ExitCode::Failure);
    }

    OutputBuffer _output{stdout};
    Diagnostics _diagnostics{stderr};
    CLI::App _app;
    Run _chosen; // the command of the command line
    ConvertOptions _convertOptions;
    TransformOptions _transformOptions;
    ShowOptions _showOptions;
    ListOptions _listOptions;
    CatalogOptions _catalogOptions;
    CreateOptions _createOptions;
    CheckOptions _checkOptions;
    PackOptions _packOptions;
    UnpackOptions _unpackOptions;
    InspectOptions _inspectOptions;
    DrawOptions _drawOptions;
};

} // namespace

int runCommandLine(const std::vector<std::string>& arguments) {
    tq_prepareStandardStreams();
    tq_letPROJSearchSharedDirectory();
    std::ios_base::sync_with_stdio(false);
    return CommandLine().run(arguments);
}
