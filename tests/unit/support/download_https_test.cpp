// downloadFile() over HTTPS: which servers are trusted.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/network/downloader.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

using testing::HasSubstr;

static const char kTlsServer[] = QUORVANE_SOURCE "/tests/fakes/web_server.py";

// A certificate authority of the test's own, and servers that it vouches for.
class DownloadHttpsTest : public testing::Test {
 protected:
  void SetUp() override {
    openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
             "-days", "2", "-subj", "/CN=Test authority", "-keyout", "ca.key", "-out", "ca.pem"});
    unsetenv("https_proxy");
    unsetenv("HTTPS_PROXY");
    unsetenv("all_proxy");
    unsetenv("ALL_PROXY");
  }

  // Makes NAME.pem and NAME.key for a server with the given subject alternative name.
  void makeCertificate(const std::string& name, const std::string& alternative) {
    test::writeFile(folder_ / "extensions", "subjectAltName=" + alternative + "\n");
    openssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-subj",
             "/CN=" + name, "-keyout", name + ".key", "-out", name + ".csr"});
    openssl({"x509", "-req", "-in", name + ".csr", "-CA", "ca.pem", "-CAkey", "ca.key",
             "-CAcreateserial", "-days", "2", "-extfile", "extensions", "-out", name + ".pem"});
  }

  test::Command serverWith(const std::string& name) {
    return {{kTlsServer, "--tls", folder_ / (name + ".pem"), folder_ / (name + ".key")}};
  }

  void trustTestAuthority() { setenv("SSL_CERT_FILE", (folder_ / "ca.pem").c_str(), 1); }

  // Downloads from the server on `port`; returns the system log.
  std::string download(const std::string& port) {
    const std::string url = "https://127.0.0.1:" + port + "/length?size=3";
    return test::capture([&] { downloadFile(url.c_str(), target_.c_str()); }).err;
  }

  void openssl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "/usr/bin/openssl");
    const test::Result result = test::run({arguments, {}, {}, folder_.path()});
    ASSERT_EQ(result.status, 0) << result.err;
  }

  test::TempFolder folder_;
  std::string target_ = folder_ / "file";
};

TEST_F(DownloadHttpsTest, AServerOfATrustedAuthorityIsDownloadedFrom) {
  makeCertificate("good", "IP:127.0.0.1");
  trustTestAuthority();
  const test::Background server(serverWith("good"));
  const std::string log = download(server.waitForLine("listening "));
  EXPECT_THAT(log, HasSubstr("downloadDidFinish\n"));
  EXPECT_EQ(test::readFile(target_), std::string("\0\1\2", 3));
}

TEST_F(DownloadHttpsTest, AServerOfAnUnknownAuthorityIsRefused) {
  makeCertificate("good", "IP:127.0.0.1");
  unsetenv("SSL_CERT_FILE");
  const test::Background server(serverWith("good"));
  const std::string log = download(server.waitForLine("listening "));
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
  EXPECT_THAT(log, HasSubstr("certificate"));
  EXPECT_FALSE(test::exists(target_));
  EXPECT_THAT(server.out(), testing::Not(HasSubstr("request")));
}

TEST_F(DownloadHttpsTest, ACertificateForAnotherHostIsRefused) {
  makeCertificate("other", "DNS:updates.invalid");
  trustTestAuthority();
  const test::Background server(serverWith("other"));
  const std::string log = download(server.waitForLine("listening "));
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
  EXPECT_FALSE(test::exists(target_));
  EXPECT_THAT(server.out(), testing::Not(HasSubstr("request")));
}

TEST_F(DownloadHttpsTest, AMissingAuthorityFileTrustsNobody) {
  makeCertificate("good", "IP:127.0.0.1");
  setenv("SSL_CERT_FILE", (folder_ / "missing").c_str(), 1);
  const test::Background server(serverWith("good"));
  EXPECT_THAT(download(server.waitForLine("listening ")), HasSubstr("Download failed! Error - "));
  EXPECT_FALSE(test::exists(target_));
}

TEST_F(DownloadHttpsTest, AProxyFromTheEnvironmentRelaysTheConnection) {
  makeCertificate("good", "IP:127.0.0.1");
  trustTestAuthority();
  const test::Background server(serverWith("good"));
  const test::Background proxy({{kTlsServer}});
  setenv("https_proxy", ("http://127.0.0.1:" + proxy.waitForLine("listening ")).c_str(), 1);
  setenv("no_proxy", "", 1);
  const std::string port = server.waitForLine("listening ");
  const std::string log = download(port);
  EXPECT_THAT(log, HasSubstr("downloadDidFinish\n"));
  EXPECT_EQ(proxy.waitForLine("request "), "CONNECT 127.0.0.1:" + port);
}
