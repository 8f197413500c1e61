#include "apps/orvane_server/tls_files.h"

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <ctime>
#include <filesystem>
#include <memory>

#include "packet/clock.h"

namespace orvane::apps {
namespace {

namespace fs = std::filesystem;

constexpr int kWarnedDays = 30;

struct FreeBio {
  void operator()(BIO* bio) const { BIO_free(bio); }
};
struct FreeCertificate {
  void operator()(X509* certificate) const { X509_free(certificate); }
};
using Certificate = std::unique_ptr<X509, FreeCertificate>;

/// The server's own is the first of the chain; null when there is none.
Certificate ReadCertificate(const std::string& path) {
  const std::unique_ptr<BIO, FreeBio> file(BIO_new_file(path.c_str(), "r"));
  if (!file) return nullptr;
  return Certificate(PEM_read_bio_X509(file.get(), nullptr, nullptr, nullptr));
}

Stamp MomentOf(const ASN1_TIME* time) {
  std::tm parts{};
  ASN1_TIME_to_tm(time, &parts);
  return Stamp{static_cast<std::int64_t>(timegm(&parts)) * 1'000'000};
}

std::string DayText(Stamp moment) {
  return TimeZone{}.DayOf(moment).ToText();
}

}  // namespace

Answer<std::string> CheckTlsFiles(const std::string& certificate, const std::string& key) {
  std::error_code error;
  const fs::perms rights = fs::status(key, error).permissions();
  if (error) return Refused("Ключът „" + key + "“ не може да се прочете.");
  if ((rights & fs::perms::others_all) != fs::perms::none) {
    return Refused("Ключът „" + key + "“ е достъпен за всички на машината. Оставете го само на " +
                   "потребителя на сървъра: chmod 600 '" + key + "'.");
  }
  const Certificate own = ReadCertificate(certificate);
  if (!own) return Refused("Файлът „" + certificate + "“ не е сертификат (PEM).");
  const Stamp now = SystemClock().Now();
  const Stamp begins = MomentOf(X509_get0_notBefore(own.get()));
  const Stamp ends = MomentOf(X509_get0_notAfter(own.get()));
  if (ends < now) {
    return Refused("Сертификатът „" + certificate + "“ изтече на " + DayText(ends) +
                   ". Клиентите няма да го приемат; подновете го.");
  }
  if (now < begins) {
    return Refused("Сертификатът „" + certificate + "“ важи едва от " + DayText(begins) + ".");
  }
  std::string warning;
  if ((rights & fs::perms::group_all) != fs::perms::none) {
    warning = "Ключът „" + key + "“ е достъпен и за групата си. ";
  }
  const std::int64_t days = (ends.micros - now.micros) / (std::int64_t{86'400} * 1'000'000);
  if (days < kWarnedDays) {
    warning += "Сертификатът „" + certificate + "“ изтича на " + DayText(ends) + ". ";
  }
  return warning;
}

}  // namespace orvane::apps
