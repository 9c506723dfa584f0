#include "platform/language/latin_language_hints.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kivra {

namespace {

struct Hints {
  const char* language;
  std::u32string_view words;      // between spaces
  std::u32string_view letters;    // that few of the other languages use
  std::u32string_view sequences;  // that are commoner than in the others, between spaces
};

constexpr std::array<Hints, 8> all = {{
    {"en",
     U" the a an and or but not is are was were be been have has had do does did will would "
     U"can could should i you he she it we they me him her us them my your his our their "
     U"this that these those what where when who why how which of to in on at for from "
     U"with by as if so no yes there here please thanks thank hello hi good new old all "
     U"any some more first last one two three time day today now very much many i'm i'll "
     U"i've it's don't can't didn't won't that's let's ",
     U"", U"th sh wh ck ing ough ey"},
    {"de",
     U" der die das den dem des ein eine einen einem einer und oder aber nicht ist sind war "
     U"waren bin bist hat habe haben hast wird werden kann können ich du er sie es wir ihr "
     U"mich mir dich dir uns euch mein meine dein deine sein was wo wann wer warum wie von "
     U"zu im in am auf für mit bei aus nach vor um wenn noch schon sehr heute morgen bitte "
     U"danke kein keine auch nur hallo gut guten neu alt alle mehr erste eins zwei drei "
     U"zeit tag jetzt viel nein ja ",
     U"ßäöü", U"sch ei ie ein tz pf cht"},
    {"fr",
     U" le la les un une des du de et ou mais ne pas est sont était être suis es ai as a "
     U"avons avez ont je tu il elle nous vous ils elles me te se lui mon ma mes ton ta "
     U"votre notre ce cette ces que qui quoi où quand pourquoi comment dans sur pour avec "
     U"par sans très bien merci bonjour salut bon bonne nouveau vieux tout tous toute plus "
     U"premier deux trois temps jour aujourd'hui maintenant demain aussi encore non oui "
     U"c'est j'ai n'est d'accord qu'il s'il au aux à ",
     U"œêèâîôûçëï", U"eau eux oi ou ez ille qu é"},
    {"es",
     U" el la los las un una unos unas y o pero no es son era está están estoy ser he ha "
     U"han tengo tiene yo tú usted él ella nosotros ustedes ellos me te se le lo mi tu su "
     U"que qué quién dónde cuándo cómo por para con sin de del en al muy más también hoy "
     U"mañana ahora gracias hola bueno buenos buena nuevo viejo todo todos más primero uno "
     U"dos tres tiempo día sí ya porque cuando donde esto esta este eso hay ",
     U"ñ", U"ll ue ción ó í á"},
    {"it",
     U" il lo la i gli le un uno una e o ma non è sono era sei siamo essere ho hai ha "
     U"abbiamo io tu lui lei noi voi loro mi ti si ci mio mia tuo suo che chi cosa dove "
     U"quando perché come di del della dei delle da dal in nel nella con su per tra molto "
     U"più anche oggi domani adesso ora grazie ciao buono buona nuovo vecchio tutto tutti "
     U"primo due tre tempo giorno sì già c'è l'ho dov'è questo questa quello al alla ",
     U"ìòùè", U"gli zz cc tt ss gh che zione"},
    {"pt",
     U" o a os as um uma e ou mas não é são era está estão estou ser tenho tem há eu tu "
     U"você ele ela nós vocês eles me te se lhe meu minha seu sua que quem onde quando "
     U"porque como de do da dos das em no na nos nas por para com sem muito mais também "
     U"hoje amanhã agora obrigado obrigada olá bom boa novo velho tudo todos primeiro dois "
     U"três tempo dia sim já isto isso este esta ao à às pelo pela ",
     U"ãõçêâ", U"lh nh ção ções ei ou em ó á"},
    {"nl",
     U" de het een en of maar niet is zijn was waren ben bent heb hebt heeft hebben wordt "
     U"kan kunnen ik jij je hij zij ze wij we jullie mij me hem haar ons mijn jouw uw dit "
     U"dat deze die wat waar wanneer wie waarom hoe van te in op aan voor met bij uit naar "
     U"om als nog al zeer heel vandaag morgen nu graag dank bedankt hallo goed goede nieuw "
     U"oud alle meer eerste twee drie tijd dag geen ook er u moet wil gaat nee ja tot na ",
     U"", U"ij oe aa ee oo uu ui sch eer"},
    {"pl",
     U" i w z na do nie to jest są był była być mam masz ma mamy się ja ty on ona my wy oni "
     U"mnie mi cię ci go jej nas wam mój moja twój co gdzie kiedy kto dlaczego jak od dla "
     U"po przy przez bez za o ale lub albo czy że żeby już jeszcze bardzo dziś dzisiaj "
     U"jutro teraz proszę dziękuję cześć dobry dobra nowy stary wszystko więcej pierwszy "
     U"dwa trzy czas dzień tak tylko też ten ta te tego ",
     U"ąęłńśźżć", U"cz sz rz dz ow ch prz w"},
}};

constexpr double letterWeight = 0.7;
constexpr double sequenceWeight = 0.25;

double sequencePoints(std::u32string_view sequences, const LetterCensus& census) {
  double sum = 0;
  while (!sequences.empty()) {
    const auto end = std::min(sequences.find(U' '), sequences.size());
    const auto sequence = sequences.substr(0, end);
    sequences.remove_prefix(std::min(end + 1, sequences.size()));
    sum += sequenceWeight *
           static_cast<double>(std::ranges::count_if(census.words, [&](const std::u32string& word) {
             return word.find(sequence) != std::u32string::npos;
           }));
  }
  return sum;
}

double points(const Hints& hints, const LetterCensus& census) {
  const auto common = std::ranges::count_if(census.words, [&](const std::u32string& word) {
    return hints.words.find(U" " + word + U" ") != std::u32string_view::npos;
  });
  const auto special = std::ranges::count_if(census.letters, [&](char32_t letter) {
    return hints.letters.find(letter) != std::u32string_view::npos;
  });
  return static_cast<double>(common) + letterWeight * static_cast<double>(special) +
         sequencePoints(hints.sequences, census);
}

}  // namespace

std::map<std::string, double> latinLanguageHints(const LetterCensus& census) {
  std::map<std::string, double> hints;
  for (const auto& language : all) hints[language.language] = points(language, census);
  return hints;
}

}  // namespace kivra
