"""The product, untouched, at its fixed places and with the vendor's own names."""

from harness.product import DOWNLOAD_ORIGIN
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE

ENGINE_PATH = "/opt/Varlen/orvane/varlen-setup"


def vendor_with_download(product, **publication):
    vendor = product.vendor()
    vendor.publish(product.sample_engine, cipher="xor", origin=DOWNLOAD_ORIGIN, **publication)
    return vendor


def test_the_product_installs_at_its_fixed_places(product):
    product.scenario(f"record {product.mark_of('first')}", "step Copie", product.gate("seen"),
                     "restart 07 Redémarrer ?", "wait-interrupt",
                     "[step 7]", f"record {product.mark_of('second')}", "end 0")
    vendor = vendor_with_download(product)
    product.namespace.trust(vendor.folder / "ca.pem")
    run = product.start("--verbose")
    run.window.await_step("Copie")
    product.open_gate("seen")
    run.window.await_alert("Redémarrer ?")
    run.window.press(French.yes)
    assert run.status() == 0

    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert product.engine_path.read_bytes() == product.sample_engine
    assert product.engine_path.with_name("varlen-setup.enc").exists()
    assert f"Orvane path is {ENGINE_PATH}" in run.log("Installations")
    first, second = (product.record(name)["arguments"] for name in ("first", "second"))
    assert first[0] == ENGINE_PATH
    assert first[5:7] == ["--ownerName", "OrvaneBootstrap"] and first[-1] == "--verbose"
    assert second == first[:11] + ["7"] + first[12:]


def test_the_product_uninstalls_with_the_engine_at_its_fixed_place(product):
    product.scenario("end 0")
    vendor = product.vendor()
    vendor.publish(product.sample_engine)
    product.namespace.trust(vendor.folder / "ca.pem")
    product.install_engine()
    run = product.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    run.window.press(French.yes)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION]
    assert "Using existing orvane" in run.log("Uninstallations")


def misleading(product, authority):
    """Everything that might move paths, hosts, limits or trust, were the product to listen to it."""
    configuration = product.folder / "openssl.cnf"
    configuration.write_text("openssl_conf = all\n[all]\nssl_conf = ssl\n[ssl]\nsystem_default = tls\n"
                             "[tls]\nMaxProtocol = TLSv1.1\n")
    return {"ORVANE_API_HOST": "localhost", "ORVANE_BUILD": "/nowhere", "ORVANE_ENGINE_ROOT": "/nowhere",
            "ORVANE_LOG_ROOT": "/nowhere", "SSL_CERT_FILE": str(authority), "SSL_CERT_DIR": str(authority.parent),
            "CURL_CA_BUNDLE": str(authority), "OPENSSL_CONF": str(configuration)}


def test_no_variable_makes_the_product_believe_a_rehearsals_vendor(product):
    vendor = vendor_with_download(product)
    (product.folder / "rehearsal.json").write_text(
        f'{{"apiOrigin": "{vendor.origin}", "certificateAuthority": "{vendor.folder}/ca.pem"}}')
    run = product.start(variables=misleading(product, vendor.folder / "ca.pem"))
    assert run.window.await_alert(French.no_connection).buttons == ("OK",)
    run.window.press("OK")
    assert run.status() == 1
    assert vendor.requests() == []
    assert not product.engine_path.exists()
    assert f"Orvane path is {ENGINE_PATH}" in run.log("Installations")


def test_no_variable_keeps_the_product_from_believing_the_systems_authorities(product):
    product.scenario("end 0")
    vendor = vendor_with_download(product)
    product.namespace.trust(vendor.folder / "ca.pem")
    nothing = product.folder / "nothing/empty.pem"
    nothing.parent.mkdir()
    nothing.touch()
    assert product.start(variables=misleading(product, nothing)).status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]


def test_the_rehearsals_program_believes_the_rehearsals_vendor_alone(rehearsal):
    """What the product is shown not to do above can be done: the variable moves this program."""
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
