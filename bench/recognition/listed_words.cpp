// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/listed_words.h"

#include <algorithm>
#include <QHash>
#include <QProcess>
#include <QSet>
#include <stdexcept>

namespace velun::bench {

namespace {

const QStringList kSentences = {
    "doctor hughes and professor huebner met in houston to talk about the budget",
    "please send the invoice to margaret thornton before friday evening",
    "the contract with siemens was signed by abigail and her brother luis",
    "melissa asked whether morgan would drive to montreal on saturday",
    "our server in brussels runs kubernetes behind an old proxy",
    "katie wrote the first draft and desmond corrected every page",
    "the museum in heidelberg shows paintings by monet and renoir",
    "gregory moved from pittsburgh to albuquerque two years ago",
    "the patient takes ibuprofen and insulin in the morning",
    "vivian will present the results of the biopsy to doctor ramirez",
    "the orchestra played beethoven and then a short piece by vivaldi",
    "ask nathaniel to call the office in zurich about the shipment",
    "fernando and beatrice are working on the turbine in rotterdam",
    "the lecture about plato and nietzsche was moved to room twelve",
    "harriet told percy that the ferry to dover had been cancelled",
    "the algorithm was found by dijkstra and improved by a student in prague",
    "sinclair wants to invest in platinum and lithium this summer",
    "our guide mohammed showed us the old market in cairo",
    "the bishop of canterbury spoke with cardinal lorenzo for an hour",
    "delia keeps the receipts from naples and palermo in a blue folder",
    "the goalkeeper of liverpool was hurt in the match against everton",
    "julian and rebecca booked a small hotel near salzburg",
    "the telescope in hawaii found another moon of saturn",
    "raymond explained the enzyme to the nurses at mercy hospital",
    "the senator from nebraska met with governor hutchinson yesterday",
    "please forward the message from caldwell to the team in bangalore",
    "the violin was made in cremona and sold in geneva",
    "sophia read a chapter of dostoevsky on the train to leipzig",
    "the council of edinburgh will vote on the plan of architect mackenzie",
    "curtis left the keys of the toyota with angela at the garage",
    "a volcano near reykjavik stopped the flights to copenhagen",
    "eleanor says that the chlorine level in the pool is too high",
    "the treaty of versailles was signed after long talks with clemenceau",
    "bernard and trudy will marry in a chapel near avignon",
    "the choir sang handel while father benedict lit the candles",
    "monica has an appointment with the neurologist on wednesday afternoon",
    "we compared the figures from chevron with those of halliburton",
    "the captain sailed from lisbon to havana in forty days",
    "agatha found the diary of winston in the attic",
    "professor goldstein teaches calculus and geometry in princeton",
    "the astronaut talked with houston about the hydrogen tank",
    "stanley forgot the password for the router in the basement",
    "gloria and hector grow saffron and tomatoes behind the house",
    "the painter lived in antwerp and later moved to seville",
    "nigel thinks that the motion of senator whitfield will pass",
    "the archive in weimar keeps the letters of schiller and goethe",
    "a friend of marianne repairs old pianos in budapest",
    "doctor patel changed the dose of morphine after the surgery",
    "the mayor of baltimore thanked captain donovan for his help",
    "leonard bought a map of patagonia in a shop near trafalgar square",
    "ingrid will translate the novel by tolstoy into norwegian",
    "the engine of the porsche was rebuilt by a mechanic in stuttgart",
    "abraham and judith moved the meeting with lufthansa to thursday",
    "the geologist found quartz and granite north of the gobi desert",
    "wallace said that the painting by rembrandt is a copy",
    "the students from oxford won the debate against those from harvard",
    "cynthia takes the tram to the clinic of doctor bergman",
    "the wedding of dominic and felicia was held in verona",
    "a report by deloitte praised the harbor of marseille",
    "gordon paid the tuition for his daughter at the academy in vienna",
};

/// Names and terms that occur in the sentences.
constexpr char kSpoken[] =
    "hughes huebner houston margaret thornton siemens abigail luis melissa morgan montreal "
    "brussels kubernetes proxy katie desmond heidelberg monet renoir gregory pittsburgh "
    "albuquerque ibuprofen insulin vivian biopsy ramirez beethoven vivaldi nathaniel zurich "
    "fernando beatrice turbine rotterdam plato nietzsche harriet percy ferry dover algorithm "
    "dijkstra prague sinclair platinum lithium mohammed cairo canterbury lorenzo delia "
    "naples palermo liverpool everton julian rebecca salzburg telescope hawaii saturn "
    "raymond enzyme nebraska hutchinson caldwell bangalore cremona geneva sophia dostoevsky "
    "leipzig edinburgh mackenzie curtis toyota angela reykjavik copenhagen eleanor chlorine "
    "versailles clemenceau bernard trudy avignon handel benedict monica neurologist chevron "
    "halliburton lisbon havana agatha winston goldstein calculus geometry princeton hydrogen "
    "stanley password router gloria hector saffron antwerp seville nigel whitfield weimar "
    "schiller goethe marianne budapest patel morphine baltimore donovan leonard patagonia "
    "trafalgar ingrid tolstoy norwegian porsche stuttgart abraham judith lufthansa quartz "
    "granite gobi wallace rembrandt oxford harvard cynthia bergman dominic felicia verona "
    "deloitte marseille gordon vienna ";

/// Others of the same kinds, which must not be heard.
constexpr char kOthers[] =
    "adelaide agnes alfred alistair amsterdam anthony arkansas armstrong athens augusta "
    "austin barcelona barnaby bavaria belfast berkeley bologna bristol burgundy calcutta "
    "cambridge carmen casablanca cathedral cecilia celeste chester cincinnati clarence "
    "claudia cleveland clinton cologne colombo constance cornelius crawford damascus daphne "
    "delaware denver dorothy dresden dublin duncan durham edgar edith elgin elias emerson "
    "ernest estelle ethan eugene fairfax felix fletcher florence francesca frankfurt gabriel "
    "galileo georgia gerald gilbert glasgow greta hamburg hamilton hannah harper harvey "
    "helena henrietta herbert horatio hudson hugo ibsen idaho irene isabel istanbul ivan "
    "jasmine jerome johannesburg jonas kafka kansas karachi kathleen kenneth kepler kyoto "
    "lambert lancaster laurence leicester leopold lucas lydia madeleine madrid malcolm "
    "manila marcus martha matilda maurice mercedes milan minerva mozart munich nairobi "
    "newton nicholas norfolk olivia orlando oscar oslo patricia pauline peking philippa "
    "phoenix pierce quebec quentin raphael reginald roland rosalind rupert sabrina salvador "
    "samantha savannah sheffield shirley sibyl simon stella sydney sylvia ";

const QStringList kVoices = {"slt", "rms", "awb", "kal16"};

QStringList split(const char* words) {
  return QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts);
}

QHash<QString, int> countOf(const QStringList& words, const QSet<QString>& list) {
  QHash<QString, int> counts;
  for (const QString& word : words) {
    if (list.contains(word)) ++counts[word];
  }
  return counts;
}

QString without(const QStringList& words, const QSet<QString>& list) {
  QStringList kept;
  std::copy_if(words.begin(), words.end(), std::back_inserter(kept),
               [&list](const QString& word) { return !list.contains(word); });
  return kept.join(u' ');
}

}  // namespace

ListedWords countListedWords(const std::vector<Clip>& clips, const QStringList& texts,
                             const QStringList& list) {
  QSet<QString> words;
  for (const QString& each : list) {
    for (const QString& word : comparedWords(each)) words += word;
  }
  ListedWords sum;
  for (std::size_t i = 0; i < clips.size(); ++i) {
    const QStringList said = comparedWords(clips[i].text);
    const QStringList heard = comparedWords(texts[static_cast<qsizetype>(i)]);
    const QHash<QString, int> saidCounts = countOf(said, words);
    const QHash<QString, int> heardCounts = countOf(heard, words);
    for (auto each = saidCounts.begin(); each != saidCounts.end(); ++each) {
      sum.spoken += each.value();
      sum.right += std::min(each.value(), heardCounts.value(each.key()));
    }
    for (auto each = heardCounts.begin(); each != heardCounts.end(); ++each) {
      sum.falselyHeard += std::max(0, each.value() - saidCounts.value(each.key()));
    }
    sum.others += countWordErrors(without(said, words), without(heard, words));
  }
  return sum;
}

std::vector<Clip> synthesiseNames(const QString& folder) {
  std::vector<Clip> clips;
  for (qsizetype i = 0; i < kSentences.size(); ++i) {
    const QString voice = kVoices[i % kVoices.size()];
    const QString name = QStringLiteral("name-%1-%2").arg(i).arg(voice);
    const QString path = folder + u'/' + name + ".wav";
    if (QProcess::execute("flite", {"-voice", voice, "-t", kSentences[i], "-o", path}) != 0) {
      throw std::runtime_error("flite failed");
    }
    clips.push_back({name, kSentences[i], readWav(path)});
  }
  return clips;
}

QStringList namesAndTerms() {
  return split(kSpoken) + split(kOthers);
}

}  // namespace velun::bench
