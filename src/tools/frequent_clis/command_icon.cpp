#include "tools/frequent_clis/command_icon.h"

#include <QCollator>
#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Entry {
  QLatin1StringView id;
  QLatin1StringView name;
  QLatin1StringView monogram;
  QRgb color;
};

constexpr std::array kFavourites = {
    Entry{"claude"_L1, "Claude"_L1, "Cl"_L1, 0xC3512C}, Entry{"codex"_L1, "Codex"_L1, "Cx"_L1, 0x0D8366},
    Entry{"gemini"_L1, "Gemini"_L1, "Ge"_L1, 0x1D6DF2}, Entry{"copilot"_L1, "Copilot"_L1, "Cp"_L1, 0x6E40C9},
    Entry{"cursor"_L1, "Cursor"_L1, "Cu"_L1, 0x26251E}, Entry{"windsurf"_L1, "Windsurf"_L1, "Ws"_L1, 0x0B7A6B},
    Entry{"grok"_L1, "Grok"_L1, "Gr"_L1, 0x16181C},     Entry{"ollama"_L1, "Ollama"_L1, "Ol"_L1, 0x3B3F46},
};

/// Sorted by name when the catalogue is built, since the order depends on the locale.
constexpr std::array kOthers = {
    Entry{"ai21"_L1, "AI21"_L1, "A2"_L1, 0xE0185E},
    Entry{"anthropic"_L1, "Anthropic"_L1, "An"_L1, 0x8A4B2F},
    Entry{"aws"_L1, "AWS"_L1, "Aw"_L1, 0xB35900},
    Entry{"azure"_L1, "Azure"_L1, "Az"_L1, 0x0076D0},
    Entry{"baichuan"_L1, "Baichuan"_L1, "Ba"_L1, 0xCF450E},
    Entry{"bedrock"_L1, "Bedrock"_L1, "Be"_L1, 0x01766B},
    Entry{"cline"_L1, "Cline"_L1, "Ci"_L1, 0x5B4FC4},
    Entry{"cohere"_L1, "Cohere"_L1, "Co"_L1, 0x39594D},
    Entry{"coze"_L1, "Coze"_L1, "Cz"_L1, 0x4D53E8},
    Entry{"comfyui"_L1, "ComfyUI"_L1, "Cf"_L1, 0x1F47C4},
    Entry{"crewai"_L1, "CrewAI"_L1, "Cr"_L1, 0xDA3421},
    Entry{"deepseek"_L1, "DeepSeek"_L1, "Ds"_L1, 0x4564FE},
    Entry{"devin"_L1, "Devin"_L1, "De"_L1, 0x1B6F8A},
    Entry{"dify"_L1, "Dify"_L1, "Di"_L1, 0x1C64F2},
    Entry{"doubao"_L1, "Doubao"_L1, "Do"_L1, 0x2B6BE4},
    Entry{"fireworks"_L1, "Fireworks AI"_L1, "Fw"_L1, 0x6720FF},
    Entry{"flux"_L1, "Flux"_L1, "Fx"_L1, 0x2D2F3A},
    Entry{"gemma"_L1, "Gemma"_L1, "Gm"_L1, 0x1B66C9},
    Entry{"github"_L1, "GitHub"_L1, "Gh"_L1, 0x24292F},
    Entry{"groq"_L1, "Groq"_L1, "Gq"_L1, 0xE1280B},
    Entry{"huggingface"_L1, "Hugging Face"_L1, "Hf"_L1, 0x9A6700},
    Entry{"kimi"_L1, "Kimi"_L1, "Ki"_L1, 0x1A3C8C},
    Entry{"kiro"_L1, "Kiro"_L1, "Ko"_L1, 0x9046FF},
    Entry{"langchain"_L1, "LangChain"_L1, "Lc"_L1, 0x1C3C3C},
    Entry{"llamaindex"_L1, "LlamaIndex"_L1, "Li"_L1, 0x8E3CD0},
    Entry{"lmstudio"_L1, "LM Studio"_L1, "Lm"_L1, 0x5046C8},
    Entry{"lovable"_L1, "Lovable"_L1, "Lo"_L1, 0xE02450},
    Entry{"manus"_L1, "Manus"_L1, "Ma"_L1, 0x34322D},
    Entry{"meta"_L1, "Meta"_L1, "Me"_L1, 0x0668E1},
    Entry{"microsoft"_L1, "Microsoft"_L1, "Ms"_L1, 0x0F6CBD},
    Entry{"midjourney"_L1, "Midjourney"_L1, "Mj"_L1, 0x1D2B4F},
    Entry{"minimax"_L1, "MiniMax"_L1, "Mm"_L1, 0xDF2261},
    Entry{"mistral"_L1, "Mistral"_L1, "Mi"_L1, 0xCF4700},
    Entry{"moonshot"_L1, "Moonshot"_L1, "Mo"_L1, 0x16191E},
    Entry{"nousresearch"_L1, "Nous Research"_L1, "Nr"_L1, 0x2E5D7A},
    Entry{"nvidia"_L1, "NVIDIA"_L1, "Nv"_L1, 0x4A7A00},
    Entry{"openai"_L1, "OpenAI"_L1, "Oa"_L1, 0x0D7D63},
    Entry{"openrouter"_L1, "OpenRouter"_L1, "Or"_L1, 0x6063F2},
    Entry{"perplexity"_L1, "Perplexity"_L1, "Px"_L1, 0x1A7F8C},
    Entry{"phind"_L1, "Phind"_L1, "Ph"_L1, 0x7A4FE0},
    Entry{"qwen"_L1, "Qwen"_L1, "Qw"_L1, 0x615CED},
    Entry{"replit"_L1, "Replit"_L1, "Re"_L1, 0xD2420A},
    Entry{"stability"_L1, "Stability AI"_L1, "St"_L1, 0x8A3FD1},
    Entry{"stepfun"_L1, "StepFun"_L1, "Sf"_L1, 0x1668DC},
    Entry{"together"_L1, "Together AI"_L1, "To"_L1, 0x096BFF},
    Entry{"trae"_L1, "Trae"_L1, "Tr"_L1, 0x0B7D4E},
    Entry{"vercel"_L1, "Vercel"_L1, "Ve"_L1, 0x111111},
    Entry{"vllm"_L1, "vLLM"_L1, "Vl"_L1, 0x2A6FB0},
    Entry{"zhipu"_L1, "Zhipu"_L1, "Zh"_L1, 0x3859FF},
};

CommandIcon icon(const Entry& entry) { return {entry.id, entry.name, entry.monogram, QColor(entry.color)}; }

std::vector<CommandIcon> buildCatalogue() {
  std::vector<CommandIcon> icons;
  icons.reserve(kFavourites.size() + kOthers.size());
  std::ranges::transform(kFavourites, std::back_inserter(icons), icon);
  std::ranges::transform(kOthers, std::back_inserter(icons), icon);

  QCollator collator;
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  std::ranges::sort(icons.begin() + kFavourites.size(), icons.end(),
                    [&](const auto& left, const auto& right) { return collator.compare(left.name, right.name) < 0; });
  return icons;
}

/// A combining mark belongs to the letter before it.
bool isPartOfWord(char32_t character) { return QChar::isLetterOrNumber(character) || QChar::isMark(character); }

QSet<QString> words(const QString& text) {
  QSet<QString> words;
  QString word;
  const auto finish = [&] {
    if (!word.isEmpty()) words.insert(std::exchange(word, {}));
  };
  for (const char32_t character : text.toUcs4()) {
    if (isPartOfWord(character))
      word += QChar::fromUcs4(character);
    else
      finish();
  }
  finish();
  return words;
}

}  // namespace

const std::vector<CommandIcon>& CommandIcon::all() {
  static const std::vector<CommandIcon> icons = buildCatalogue();
  return icons;
}

const CommandIcon& CommandIcon::terminal() {
  static const CommandIcon icon{u"terminal"_s, u"Terminal"_s, u">_"_s, QColor::fromRgbF(0.161F, 0.188F, 0.251F)};
  return icon;
}

const CommandIcon& CommandIcon::find(const std::optional<QString>& id) {
  if (!id) return terminal();
  const auto found = std::ranges::find(all(), *id, &CommandIcon::id);
  return found == all().end() ? terminal() : *found;
}

QString CommandIcon::infer(const QString& command) {
  const QSet<QString> present = words(command.toLower());
  const auto found = std::ranges::find_if(all(), [&](const CommandIcon& icon) { return present.contains(icon.id); });
  return found == all().end() ? terminal().id : found->id;
}
