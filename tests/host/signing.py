#!/usr/bin/env python3
"""What vhtool sign, verify and trust do with keys and certificates of another tool.

Arguments: the program that starts Windows programs, vhtool, the program of tests/signing, a folder of the test's own.
"""
import json
import os
import pathlib
import pty
import select
import shutil
import struct
import subprocess
import sys
import time
import tty

import checks
from checks import expect, faults

RUNNER, TOOL, INSIDE, WORK = sys.argv[1:5]
HEADER = 493


def openssl(*words, data=None):
    done = subprocess.run(["openssl", *words], cwd=WORK, input=data, capture_output=True)
    if done.returncode:
        sys.exit(f"openssl {' '.join(words)}: {done.stderr.decode()}")
    return done.stdout


def tool(*words, **environment):
    done = subprocess.run([RUNNER, TOOL, *words], cwd=WORK, env={**os.environ, **environment}, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=100)
    return done.returncode, done.stdout.decode().replace("\r", ""), done.stderr.decode()


def inside(*words):
    done = subprocess.run([RUNNER, INSIDE, *words], cwd=WORK, capture_output=True, timeout=500)
    return done.returncode, done.stdout.decode().replace("\r\n", ", ")


def data_file(name, content=b"setup data " * 40):
    """Header, bytes, descriptor with the size of the block behind it, that block."""
    descriptor = bytes(36) + struct.pack("<I", 100) + bytes(8)
    at = HEADER + len(content)
    end = at + len(descriptor) + 100
    head = struct.pack("<4sIIIII", b"VHc(", 0x04000C1C, 0, at, len(descriptor), end)
    (pathlib.Path(WORK) / name).write_bytes(head.ljust(HEADER, b"h") + content + descriptor + b"2" * 100)
    return name


def read(name):
    return (pathlib.Path(WORK) / name).read_bytes()


def write(name, data):
    (pathlib.Path(WORK) / name).write_bytes(data)
    return name


def make_certificate(name, issuer=None, subject=None, days=30, authority=False, expired=False):
    """NAME.key, NAME.cer (DER), NAME.pem, signed by another or by itself."""
    openssl("genrsa", "-out", f"{name}.key", "2048")
    subject = subject or f"/CN=VHRT {name}/OU=Unit/O=Makers/emailAddress={name}@example.com"
    openssl("req", "-new", "-key", f"{name}.key", "-subj", subject, "-out", f"{name}.csr")
    write("extensions", b"basicConstraints=critical,CA:TRUE\n" if authority else b"basicConstraints=CA:FALSE\n")
    if expired:
        (pathlib.Path(WORK) / "new").mkdir(exist_ok=True)
        write("index.txt", b"")
        write("ca.conf", b"[ca]\ndefault_ca=it\n[it]\ndatabase=index.txt\nnew_certs_dir=new\nserial=serial\n"
              b"default_md=sha256\npolicy=any\n[any]\ncommonName=optional\norganizationalUnitName=optional\n"
              b"organizationName=optional\nemailAddress=optional\n")
        openssl("ca", "-batch", "-config", "ca.conf", "-in", f"{name}.csr", "-cert", f"{issuer}.pem", "-keyfile",
                f"{issuer}.key", "-create_serial", "-extfile", "extensions", "-startdate", "20200101000000Z",
                "-enddate", "20210101000000Z", "-out", f"{name}.pem", "-notext")
    else:
        signer = ["-CA", f"{issuer}.pem", "-CAkey", f"{issuer}.key", "-CAcreateserial"] if issuer else \
            ["-signkey", f"{name}.key"]
        openssl("x509", "-req", "-in", f"{name}.csr", *signer, "-days", str(days), "-extfile", "extensions", "-out",
                f"{name}.pem")
    openssl("x509", "-in", f"{name}.pem", "-outform", "DER", "-out", f"{name}.cer")


def bundle(name, *certificates):
    """A PKCS#7 file of several certificates."""
    words = [word for one in certificates for word in ("-certfile", f"{one}.pem")]
    openssl("crl2pkcs7", "-nocrl", *words, "-outform", "DER", "-out", name)
    return name


def pvk(name, kind, password=""):
    openssl("rsa", "-provider", "legacy", "-provider", "default", "-in", f"{name}.key", "-outform", "PVK",
            f"-pvk-{kind}", "-passout", f"pass:{password}", "-out", f"{name}-{kind}.pvk")
    return f"{name}-{kind}.pvk"


def trailer_of(name):
    signed = read(name)
    end = struct.unpack_from("<I", signed, 20)[0]
    length = struct.unpack_from("<I", signed, end)[0]
    return signed[:end], signed[end + 4:end + 4 + length], signed[end + 4 + length:]


def verified_by_openssl(name, signer):
    """CryptoAPI writes the signature with its lowest byte first."""
    content, signature, _ = trailer_of(name)
    write("content", content)
    write("signature", signature[::-1])
    openssl("x509", "-in", f"{signer}.pem", "-pubkey", "-noout", "-out", "public")
    return openssl("dgst", "-sha1", "-verify", "public", "-signature", "signature", "content").decode().strip()


def verify(name, *words):
    code, out, err = tool("verify", name, *words)
    try:
        seen = json.loads(out)
    except ValueError:
        faults.append(f"{name}: no JSON: {out} {err}")
        return {}
    expect(f"{name}: exit code", code, 0 if seen["result"] else 1)
    return seen


def check_verify(name, error, *words, **more):
    seen = verify(name, *words)
    wanted = {"error": f"0x{error:08X}", "result": error == 0, **more}
    expect(f"{name} {words}", {key: str(seen.get(key)) if key == "error" else seen.get(key) for key in wanted}, wanted)


def thumbprint(certificate):
    digits = openssl("x509", "-in", f"{certificate}.pem", "-fingerprint", "-sha1", "-noout").decode()
    return digits.split("=")[1].strip().replace(":", "")


def root_store(certificate, put):
    """Puts a certificate into this user's ROOT store, or takes it out."""
    key = "HKCU\\Software\\Microsoft\\SystemCertificates\\Root\\Certificates\\" + thumbprint(certificate)
    if put:
        der = read(f"{certificate}.cer")
        blob = struct.pack("<III", 32, 1, len(der)) + der
        words = ["add", key, "/v", "Blob", "/t", "REG_BINARY", "/d", blob.hex(), "/f"]
    else:
        words = ["delete", key, "/f"]
    expect(f"reg {words[0]}", subprocess.run([RUNNER, "reg", *words], capture_output=True).returncode, 0)


def forget_trust():
    subprocess.run([RUNNER, "reg", "delete", "HKCU\\SOFTWARE\\Varnholt\\Cryptography\\Trust", "/f"], capture_output=True)


def sign(name, wanted, *words, data=None, **environment):
    """Signs a file made anew; what is refused stays as it was."""
    if data is None:
        data_file(name)
    else:
        write(name, data)
    before = read(name)
    code, out, err = tool("sign", name, *words, **environment)
    expect(f"sign {name}", (code, out + err if code != wanted else ""), (wanted, ""))
    if wanted:
        expect(f"{name} stays as it was", read(name) == before, True)
    return err


def check_keys():
    """Each kind of key file, wrong passwords, and keys that are not the certificate's."""
    make_certificate("alone")
    make_certificate("other")
    write("plain.txt", b"secret\nnot this\n")
    write("wrong.txt", b"Secret\n")
    certificate = ("--certificate", "alone.cer")
    for kind in ("none", "weak", "strong"):
        key = pvk("alone", kind, "secret")
        words = ("--key", key, *certificate)
        sign(f"{kind}.dat", 0, *words, "--password-file", "plain.txt")
        expect(f"{kind}: openssl", verified_by_openssl(f"{kind}.dat", "alone"), "Verified OK")
        check_verify(f"{kind}.dat", 0, signed=True, trusted=False, subject="VHRT alone, Unit, Makers, alone@example.com",
                     issuer="VHRT alone, Unit, Makers, alone@example.com")
        if kind != "none":
            sign("wrong.dat", 1, *words, "--password-file", "wrong.txt")
            sign("no-password.dat", 1, *words)
            sign("environment.dat", 0, *words, VHTOOL_PASSWORD="secret")
            err = sign("quiet.dat", 1, *words, VHTOOL_PASSWORD="Passw0rd-of-mine")
            expect("no password in messages", "Passw0rd" in err, False)
    key = bytearray(read("alone-none.pvk"))
    expect("the other tool marks keys for exchange or signature",
           struct.unpack_from("<I", key, 28)[0] in (0xA400, 0x2400), True)
    for algorithm in (0xA400, 0x2400):
        struct.pack_into("<I", key, 28, algorithm)
        sign("marked.dat", 0, "--key", write("marked.pvk", key), *certificate)
    for damaged in (key[:-1], key[:24], b"", b"x" + key[1:], key[:20] + b"\xff" * 4 + key[24:]):
        sign("damaged.dat", 1, "--key", write("damaged.pvk", damaged), *certificate)
    changed = read("alone.cer")
    sign("damaged.dat", 1, "--key", "alone-none.pvk", "--certificate",
         write("damaged.cer", changed[:-1] + bytes([changed[-1] ^ 1])))
    sign("foreign.dat", 1, "--key", "alone-none.pvk", "--certificate", "other.cer")
    sign("no-key.dat", 1, "--key", "missing.pvk", *certificate)
    sign("no-certificate.dat", 1, "--key", "alone-none.pvk", "--certificate", "missing.cer")


def check_files():
    """What is no data file, what is signed already, what is changed."""
    words = ("--key", "alone-none.pvk", "--certificate", "alone.cer")
    good = read(data_file("unsigned.dat"))
    check_verify("unsigned.dat", 0x80042328, signed=False, trusted=False, subject="")
    check_verify("missing.dat", 0x80070002)
    expect("signed twice", "signed already" in sign("twice.dat", 1, *words, data=read("none.dat")), True)
    for damaged in (good[:-1], good[:100], b"", b"x" + good[1:], good[:12] + b"\xff" * 8 + good[20:]):
        sign("bad.dat", 1, *words, data=damaged)
    signed = read("none.dat")
    check_verify(write("magic.dat", b"x" + signed[1:]), 13, signed=True)
    check_verify(write("content.dat", signed[:600] + b"x" + signed[601:]), 0x8004232A, signed=True, trusted=False)
    check_verify("none.dat", 0, "--expect", "VHRT ALONE")
    check_verify("none.dat", 0x800B0100, "--expect", "VHRT other")
    check_verify("none.dat", 0x800B0100, "--expect", "")
    check_verify("none.dat", 0, "--expect", "|" + thumbprint("alone"))
    for name, step in (("none.dat", "3"), ("chain.dat", "7")):
        code, said = inside("changes", name, "changed.dat", step)
        expect(f"{name}: no changed byte verifies", (code, said if code else ""), (0, ""))
        print(name, len(read(name)), "bytes:", said)
    expect("a disk that fills", inside("unwritable", data_file("full.dat"), *words[1::2])[0], 0)


def check_trust():
    forget_trust()
    expect("a stranger", verify("none.dat").get("trusted"), False)
    expect("trust an unsigned file", tool("trust", "unsigned.dat")[0], 1)
    expect("trust", tool("trust", "none.dat")[0], 0)
    expect("a friend", verify("none.dat").get("trusted"), True)
    # A stranger under the friend's name.
    make_certificate("namesake", subject="/CN=VHRT alone/OU=Unit/O=Makers/emailAddress=alone@example.com")
    sign("namesake.dat", 0, "--key", pvk("namesake", "none"), "--certificate", "namesake.cer")
    check_verify("namesake.dat", 0, trusted=False)
    forget_trust()
    expect("forgotten", verify("none.dat").get("trusted"), False)


def check_chains():
    make_certificate("root", authority=True)
    make_certificate("middle", "root", authority=True)
    make_certificate("leaf", "middle")
    make_certificate("late", "middle", expired=True)
    key = pvk("leaf", "none")
    whole = bundle("whole.p7b", "leaf", "middle", "root")
    sign("chain.dat", 0, "--key", key, "--certificate", whole)
    check_verify("chain.dat", 0, trusted=False, issuer="VHRT middle, Unit, Makers, middle@example.com")
    part = bundle("part.p7b", "leaf", "middle")
    sign("part.dat", 1, "--key", key, "--certificate", part)
    # A certificate that the signer's issuer has nothing to do with.
    sign("wrong-issuer.dat", 1, "--key", key, "--certificate", bundle("wrong.p7b", "leaf", "root"))
    sign("late.dat", 0, "--key", pvk("late", "none"), "--certificate", bundle("late.p7b", "late", "middle", "root"))
    check_verify("late.dat", 0x80042329, signed=True)
    root_store("root", True)
    try:
        sign("part.dat", 0, "--key", key, "--certificate", part)
        check_verify("part.dat", 0, "--expect", "VHRT leaf")
        # The last that leads to the root has run out.
        make_certificate("stale", "root", authority=True, expired=True)
        make_certificate("young", "stale")
        err = sign("young.dat", 1, "--key", pvk("young", "none"), "--certificate", bundle("y.p7b", "young", "stale"))
        expect("a chain that has run out", "0x800B0101" in err, True)
    finally:
        root_store("root", False)
    check_verify("part.dat", 0x80042329, signed=True)


def check_pfx():
    openssl("pkcs12", "-export", "-inkey", "leaf.key", "-in", "leaf.pem", "-certfile", "middle.pem", "-passout",
            "pass:secret", "-out", "leaf.pfx")
    openssl("pkcs12", "-export", "-inkey", "alone.key", "-in", "alone.pem", "-passout", "pass:", "-out", "alone.pfx")
    openssl("pkcs12", "-export", "-nokeys", "-in", "alone.pem", "-passout", "pass:", "-out", "keyless.pfx")
    sign("pfx.dat", 0, "--specification", "leaf.pfx", "--password-file", write("marked.txt", b"\xef\xbb\xbfsecret\n"))
    expect("pfx: openssl", verified_by_openssl("pfx.dat", "leaf"), "Verified OK")
    sign("pfx-open.dat", 0, "--specification", "alone.pfx")
    check_verify("pfx-open.dat", 0, "--expect", "VHRT alone")
    sign("pfx-wrong.dat", 1, "--specification", "leaf.pfx", "--password-file", "wrong.txt")
    sign("pfx-keyless.dat", 1, "--specification", "keyless.pfx")
    sign("pfx-missing.dat", 1, "--specification", "missing.pfx")
    sign("no-store.dat", 1, "--specification", "*Nowhere:VHRT")
    sign("nobody.dat", 1, "--specification", "*VHRT nobody at all")


def check_stores():
    """Keys in "MY", by subject and by thumbprint; digits that are none are looked for in subjects."""
    digits = thumbprint("alone")
    for place, root, location in (("user", "HKCU", ""), ("machine", "HKLM", "Machine:")):
        expect(f"store of the {place}", inside("store", "alone.pfx", "", place), (0, ""))
        for text, code in (("VHRT alone", 0), ("|" + digits.lower(), 0), ("|VHRT ALONE", 0), ("|" + "0" * 40, 1)):
            sign("store.dat", code, "--specification", f"*MY*{location}{text}")
            sign("store.dat", code, "--specification", f"*{location}{text}?dual")
        sign("store.dat", 0, "--specification", f"*{location}VHRT alone")
        check_verify("store.dat", 0)
        key = f"{root}\\Software\\Microsoft\\SystemCertificates\\MY\\Certificates\\{digits}"
        expect(f"reg {root}", subprocess.run([RUNNER, "reg", "delete", key, "/f"], capture_output=True).returncode, 0)
        sign("store.dat", 1, "--specification", f"*{location}VHRT alone")


def check_prompt():
    """A person at a console is asked, and does not see the password."""
    for password, wanted in ((b"secret", 0), (b"wrong", 1)):
        ours, theirs = pty.openpty()
        tty.setraw(theirs)  # what echoes is the program then
        words = [RUNNER, TOOL, "sign", data_file("asked.dat"), "--key", "alone-strong.pvk", "--certificate", "alone.cer"]
        with subprocess.Popen(words, cwd=WORK, stdin=theirs, stdout=theirs, stderr=theirs) as asked:
            seen, end = b"", time.monotonic() + 100
            while asked.poll() is None and time.monotonic() < end:
                if select.select([ours], [], [], 0.1)[0]:
                    seen += os.read(ours, 1000)
                    if seen.endswith(b"key:\r\n\x1b[?25h"):
                        os.write(ours, password + b"\r")
            asked.kill()
        os.close(ours)
        os.close(theirs)
        expect("asked", (asked.returncode, password in seen), (wanted, False))


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    os.makedirs(WORK)
    check_keys()
    check_chains()
    check_pfx()
    check_stores()
    check_prompt()
    check_trust()
    check_files()
    for words in (["sign", "none.dat"], ["sign", "none.dat", "--specification", ""], ["verify", ""],
                  ["pending", "record", "none.dat", ""],
                  ["sign", "none.dat", "--key", "a.pvk"], ["verify"],
                  ["sign", "none.dat", "--password", "x", "--specification", "a.pfx"]):
        expect(f"{words}", tool(*words)[0], 2)


if __name__ == "__main__":
    main()
    checks.finish()
