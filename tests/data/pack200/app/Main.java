package app;

import java.util.Scanner;

/** Prints what its classes hold, so that two jars of it can be compared by running them. */
public class Main {
  enum Colour {
    RED,
    GREEN {
      @Override
      int number() {
        return 2;
      }
    };

    int number() {
      return 1;
    }
  }

  public static void main(String[] arguments) {
    for (Colour colour : Colour.values()) {
      System.out.println(colour + " " + colour.number());
    }
    System.out.println(3.5f + " " + 123456789012L + " " + 1e300 + " \u20ac");
    System.out.println(Young.text("young"));
    System.out.println(new Scanner(Main.class.getResourceAsStream("/data.txt")).nextLine());
  }
}
