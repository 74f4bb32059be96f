#include "cli/program.hpp"

#include "cli/commandline.hpp"
#include "cli/commands.hpp"

#include <functional>
#include <stdexcept>
#include <utility>

namespace Cli {

namespace {

constexpr const char* moduleHelp = "GAIN/In0, PEQ/Out2/4 ou o número";
constexpr const char* channelHelp = "In0, In1, Out0 a Out3";
constexpr const char* localStatuses = "Termina com 0; 1 falha; 2 uso errado.";
constexpr const char* statuses =
    "Termina com 0; 1 outra falha; 2 uso errado; 3 recusado pela caixa ou não confere;\n"
    "4 sem resposta; 5 não abre a porta ou a ponte; 130 e 143 interrompido.";

// The values of a command's arguments. A command uses some of them.
struct Arguments {
    Addresses addresses;
    std::string range = "1-16";
    std::vector<std::string> modules;
    std::string module;
    std::vector<std::string> assignments;
    bool watch = false;
    bool all = false;
    std::uint32_t number = 0;
    std::string name;
    std::string channel;
    std::string file;
    bool keepGoing = false;
    RestoreOptions restoring;
    ResponseOptions response;
    std::uint32_t band = 0;
    double seconds = 30;
};

// One command line: the table of all commands, read once.
class Program {
public:
    explicit Program(Session& session)
        : session(session)
        , commandLine("corvane-cli", "Encontra, ajusta e acompanha caixas K7Q.", Language::portuguese) {
        commandLine.app.require_subcommand(1);
        commandLine.app.footer(statuses);
        addOptions();
        addSpeakerCommands();
        addSettingCommands();
        addPresetCommands();
        addShowCommands();
        addPeqCommands();
    }

    void run(const std::vector<std::string>& arguments) {
        if (commandLine.read(arguments)) command();
    }

    const CLI::App& app() const { return commandLine.app; }

private:
    CLI::App* add(CLI::App& parent, const char* name, const char* help, std::function<void()> run,
                  const char* footer = statuses) {
        CLI::App* const added = parent.add_subcommand(name, help);
        added->callback([this, run = std::move(run)] { command = run; });
        added->fallthrough();
        added->footer(footer);
        return added;
    }

    CLI::App* add(const char* name, const char* help, std::function<void()> run,
                  const char* footer = statuses) {
        return add(commandLine.app, name, help, std::move(run), footer);
    }

    // An argument that stands alone, not after an option's name.
    template <class Value>
    static CLI::Option* argument(CLI::App* command, const char* name, Value& value, const char* help) {
        return command->add_option(name, value, help)->type_name("")->required();
    }

    CLI::Option* addresses(CLI::App* command) {
        return command
            ->add_option_function<std::string>(
                "CAIXAS", [this](const std::string& text) { a.addresses = Addresses::parse(text); },
                "endereços: 1, 1-3,5 ou all")
            ->type_name("")
            ->required();
    }

    void addOptions() {
        CLI::App& app = commandLine.app;
        Endpoint& endpoint = session.endpoint;
        CLI::Option* const port = app.add_option("--port", endpoint.port, "porta serial")->type_name("PORTA");
        CLI::Option* const toBridge = app.add_option_function<std::string>(
                                             "--bridge",
                                             [&endpoint](const std::string& text) {
                                                 endpoint.bridge = Wendril::BridgeAddress::parse(text);
                                             },
                                             "ponte Wi-Fi")
                                          ->type_name("HOST[:PORTA]")
                                          ->excludes(port);
        app.add_option("--demo", endpoint.demoSpeakers, "cadeia simulada de N caixas (3)")
            ->type_name("[N]")
            ->expected(0, 1)
            ->default_str("3")
            ->transform(commandLine.number<std::size_t>(1, mostSpeakers))
            ->excludes(port)
            ->excludes(toBridge);
        app.add_flag("--yes", session.yes, "não pergunta");
        app.add_flag("--verbose", session.verbose, "mostra cada quadro em stderr");
        app.add_flag("--json", session.json, "escreve JSON, também os erros");
    }

    void addSpeakerCommands() {
        CLI::App* const ports = add(
            "ports", "lista as portas seriais", [this] { listPorts(session, a.all); }, localStatuses);
        ports->add_flag("--all", a.all, "também as portas do próprio computador");

        CLI::App* const toScan = add("scan", "procura caixas", [this] { scan(session, a.range); });
        argument(toScan, "FAIXA", a.range, "endereços PRIMEIRO-ÚLTIMO (1-16)")->required(false);

        add("address", "dá endereços novos às caixas, na ordem da linha",
            [this] { assignAddresses(session); });
        addresses(add("info", "identifica caixas", [this] { showInfo(session, a.addresses); }));

        CLI::App* const meters =
            add("meters", "mostra os níveis", [this] { showMeters(session, a.addresses, a.watch); });
        addresses(meters);
        meters->add_flag("--watch", a.watch, "até Ctrl-C");

        CLI::App* const check =
            add("check", "testa a linha", [this] { checkLine(session, a.addresses, a.seconds); });
        addresses(check)->required(false);
        check->add_option("--seconds", a.seconds, "duração (30)")
            ->type_name("S")
            ->transform(commandLine.number(0.1, 86400.0));

        CLI::App* const script = add("run", "executa os comandos de um arquivo, um por linha",
                                     [this] { runScript(session, a.file, a.keepGoing); });
        argument(script, "ARQUIVO", a.file, "\"-\" lê a entrada padrão; # começa um comentário");
        script->add_flag("--keep-going", a.keepGoing, "continua depois de uma falha");
    }

    void addSettingCommands() {
        CLI::App* const read = add("read", "lê módulos (todos, se nenhum for dito)",
                                   [this] { readModules(session, a.addresses, a.modules); });
        addresses(read);
        argument(read, "MÓDULO", a.modules, moduleHelp)->required(false);

        CLI::App* const write = add("write", "ajusta campos de um módulo",
                                    [this] { writeModule(session, a.addresses, a.module, a.assignments); });
        addresses(write);
        argument(write, "MÓDULO", a.module, moduleHelp);
        argument(write, "AJUSTE", a.assignments,
                 "campo=valor, por exemplo db=-6, fc=2,5k ou type=linkwitz24");

        CLI::App* const response = add("response", "curvas de resposta, com fase",
                                       [this] { showResponse(session, a.addresses, a.response); });
        addresses(response);
        argument(response, "CANAL", a.response.channels, channelHelp)->required(false);
        response->add_option("--sum", a.response.sum, "soma saídas, com ganho, atraso, polaridade e mudo")
            ->type_name("CANAL,...")
            ->delimiter(',')
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        response->add_option("--svg", a.response.svg, "desenha as curvas neste arquivo")
            ->type_name("ARQUIVO");
    }

    void addPresetCommands() {
        CLI::App* const preset = commandLine.app.add_subcommand("preset", "presets guardados nas caixas");
        preset->require_subcommand(1)->fallthrough();
        preset->footer(statuses);
        addresses(preset);
        const auto slot = [this](CLI::App* command) {
            argument(command, "N", a.number, "número do preset, 0 a 31")
                ->transform(commandLine.number<std::uint32_t>(0, 31));
        };
        add(*preset, "list", "lista os presets", [this] { listPresets(session, a.addresses); });
        slot(add(*preset, "load", "carrega um preset",
                 [this] { loadPreset(session, a.addresses, a.number); }));
        CLI::App* const save = add(*preset, "save", "salva os ajustes atuais",
                                   [this] { savePreset(session, a.addresses, a.number, a.name); });
        slot(save);
        argument(save, "NOME", a.name, "nome, até 20 bytes");
        slot(add(*preset, "delete", "apaga um preset",
                 [this] { deletePreset(session, a.addresses, a.number); }));
    }

    void addPeqCommands() {
        CLI::App* const peq = commandLine.app.add_subcommand("peq", "equalizadores em arquivos de texto");
        peq->require_subcommand(1)->fallthrough();
        peq->footer(statuses);
        CLI::App* const toImport = add(*peq, "import", "escreve os filtros de um arquivo num canal", [this] {
            importEqualiser(session, a.addresses, a.channel, a.file, a.band);
        });
        CLI::App* const toExport = add(*peq, "export", "mostra o equalizador de um canal como arquivo",
                                       [this] { exportEqualiser(session, onlyAddress(), a.channel); });
        for (CLI::App* const command : {toImport, toExport}) {
            addresses(command);
            argument(command, "CANAL", a.channel, channelHelp);
        }
        argument(toImport, "ARQUIVO", a.file,
                 "texto com linhas \"Filter 1: ON PK Fc 63,0 Hz Gain -4,5 dB Q 3,00\"");
        toImport->add_option("--from", a.band, "primeira banda, a partir de 0 (0)")
            ->type_name("BANDA")
            ->transform(commandLine.number<std::uint32_t>(0, 9));
    }

    std::uint8_t onlyAddress() const {
        if (a.addresses.named.size() != 1) throw std::invalid_argument("este comando é para uma caixa só");
        return a.addresses.named.front();
    }

    void addShowCommands() {
        addresses(add("backup", "escreve um arquivo de show: backup > show.json", [this] {
            backup(session, a.addresses);
        }))->required(false);
        const auto file = [this](CLI::App* command) {
            argument(command, "ARQUIVO", a.file, "arquivo de show; \"-\" lê a entrada padrão");
        };
        file(add("diff", "mostra o que difere do arquivo de show", [this] { diff(session, a.file); }));
        CLI::App* const toRestore = add("restore", "escreve nas caixas o que difere do arquivo de show",
                                        [this] { restore(session, a.file, a.restoring); });
        file(toRestore);
        toRestore->add_option("--only", a.restoring.only, "só estes tipos de módulo, como PEQ,DELAY")
            ->type_name("TIPO,...")
            ->delimiter(',')
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        toRestore
            ->add_option("--to", a.restoring.moves, "a caixa do arquivo vai para outra da linha, como 2=1")
            ->type_name("ARQUIVO=LINHA,...")
            ->delimiter(',')
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        toRestore->add_flag("--dry-run", a.restoring.dryRun, "só mostra o que mudaria");

        CLI::App* const toReport = add("report", "descreve caixas numa página para imprimir ou arquivar",
                                       [this] { report(session, a.addresses, a.file); });
        addresses(toReport)->required(false);
        toReport->add_option("--html", a.file, "escreve a página neste arquivo")
            ->type_name("ARQUIVO")
            ->required();
    }

    Session& session;
    CommandLine commandLine;
    Arguments a;
    std::function<void()> command;
};

}  // namespace

void runCommand(Session& session, const std::vector<std::string>& arguments) {
    Program(session).run(arguments);
}

void useCommandLine(const std::function<void(const CLI::App&)>& use) {
    Session session;
    use(Program(session).app());
}

}  // namespace Cli
