#include "platform/linux/latin_language_hints.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kivra {

namespace {

struct Hints {
  const char* language;
  std::u32string_view words;    // between spaces
  std::u32string_view letters;  // that few of the other languages use
};

constexpr std::array<Hints, 8> all = {{
    {"en",
     U" the a an and or but not is are was were be been have has had do does did will would can "
     U"could should i you he she it we they me him her us them my your his our their this that "
     U"these those what where when who why how which of to in on at for from with by as if so no "
     U"yes there here please thanks thank i'm i'll i've it's don't can't didn't won't that's "
     U"let's ",
     U""},
    {"de",
     U" der die das den dem des ein eine einen einem einer und oder aber nicht ist sind war waren "
     U"bin bist hat habe haben hast wird werden kann können ich du er sie es wir ihr mich mir dich "
     U"dir uns euch mein dein sein was wo wann wer warum wie von zu im in am auf für mit bei aus "
     U"nach vor um wenn noch schon sehr heute morgen bitte danke kein keine auch nur ",
     U"ßäöü"},
    {"fr",
     U" le la les un une des du de et ou mais ne pas est sont était être suis es ai as a avons "
     U"avez "
     U"ont je tu il elle nous vous ils elles me te se lui mon ma mes ton ta votre notre ce cette "
     U"ces "
     U"que qui quoi où quand pourquoi comment dans sur pour avec par sans très bien merci bonjour "
     U"aussi plus encore c'est j'ai n'est d'accord qu'il s'il au aux ",
     U"œêèâîôûç"},
    {"es",
     U" el la los las un una unos unas y o pero no es son era está están estoy ser he ha han tengo "
     U"tiene yo tú usted él ella nosotros ustedes ellos me te se le lo mi tu su que qué quién "
     U"dónde "
     U"cuándo cómo por para con sin de del en al muy más también hoy mañana gracias hola sí ya "
     U"porque cuando donde esto esta este eso hay ",
     U"ñ"},
    {"it",
     U" il lo la i gli le un uno una e o ma non è sono era sei siamo essere ho hai ha abbiamo io "
     U"tu "
     U"lui lei noi voi loro mi ti si ci mio mia tuo suo che chi cosa dove quando perché come di "
     U"del "
     U"della dei delle da dal in nel nella con su per tra molto più anche oggi domani grazie ciao "
     U"sì "
     U"già c'è l'ho dov'è questo questa quello al alla ",
     U"ìòù"},
    {"pt",
     U" o a os as um uma e ou mas não é são era está estão estou ser tenho tem há eu tu você ele "
     U"ela "
     U"nós vocês eles me te se lhe meu minha seu sua que quem onde quando porque como de do da dos "
     U"das em no na nos nas por para com sem muito mais também hoje amanhã obrigado obrigada olá "
     U"sim "
     U"já isto isso este esta ao à pelo pela ",
     U"ãõ"},
    {"nl",
     U" de het een en of maar niet is zijn was waren ben bent heb hebt heeft hebben wordt kan "
     U"kunnen "
     U"ik jij je hij zij ze wij we jullie mij me hem haar ons mijn jouw uw dit dat deze die wat "
     U"waar "
     U"wanneer wie waarom hoe van te in op aan voor met bij uit naar om als nog al zeer heel "
     U"vandaag "
     U"morgen graag dank bedankt geen ook er u moet wil gaat ",
     U""},
    {"pl",
     U" i w z na do nie to jest są był była być mam masz ma mamy się ja ty on ona my wy oni mnie "
     U"mi "
     U"cię ci go jej nas wam mój moja twój co gdzie kiedy kto dlaczego jak od dla po przy przez "
     U"bez "
     U"za o ale lub albo czy że żeby już jeszcze bardzo dziś dzisiaj jutro proszę dziękuję tak "
     U"tylko "
     U"też ten ta te tego ",
     U"ąęłńśźż"},
}};

constexpr double letterWeight = 0.7;

double points(const Hints& hints, const LetterCensus& census) {
  double sum = 0;
  for (const auto& word : census.words) {
    if (hints.words.find(U" " + word + U" ") != std::u32string_view::npos) sum += 1;
  }
  const auto special = std::ranges::count_if(census.letters, [&](char32_t letter) {
    return hints.letters.find(letter) != std::u32string_view::npos;
  });
  return sum + letterWeight * static_cast<double>(special);
}

}  // namespace

std::map<std::string, double> latinLanguageHints(const LetterCensus& census) {
  std::map<std::string, double> hints;
  for (const auto& language : all) hints[language.language] = points(language, census);
  return hints;
}

}  // namespace kivra
